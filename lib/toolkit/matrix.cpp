#include "lib/toolkit/matrix.h"

#include <cstddef>

namespace tv {

namespace {

template <class Number>
Matrix64 product(const Number* a, const Number* b)
{
    Matrix64 out{};
    for (std::size_t row = 0; row < 4; ++row)
        for (std::size_t column = 0; column < 4; ++column) {
            double sum = 0;
            for (std::size_t i = 0; i < 4; ++i)
                sum += static_cast<double>(a[4 * row + i]) * static_cast<double>(b[4 * i + column]);
            out[4 * row + column] = sum;
        }
    return out;
}

} // namespace

void multiply(const float* a, const float* b, float* out)
{
    const Matrix64 result = product(a, b);
    for (std::size_t i = 0; i < 16; ++i) out[i] = static_cast<float>(result[i]);
}

Matrix64 multiply(const Matrix64& a, const Matrix64& b)
{
    return product(a.data(), b.data());
}

} // namespace tv
