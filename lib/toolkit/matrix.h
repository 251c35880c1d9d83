// Products of matrices. Row vectors stand on the left: a point p goes to p * M, the translation is row 3.
#pragma once
#include <array>

namespace tv {

using Matrix64 = std::array<double, 16>; // row by row

// out = a * b; out may be either. Sums are taken in double precision and rounded once.
void multiply(const float* a, const float* b, float* out);
Matrix64 multiply(const Matrix64& a, const Matrix64& b);

} // namespace tv
