// Vectors of three floats and matrices of four rows.
#include <cmath>

#include "lib/toolkit/matrix.h"
#include "lib/toolkit/vc4_tv.h"
#include "lib/toolkit/words/word_list.h"

extern "C" {

void Tv_Vector_Transform(int32_t, int32_t, int32_t, int32_t, int32_t, int32_t, const float* in, const float (*m)[4],
                         float* out)
{
    double result[3] = {};
    for (int row = 0; row < 3; ++row)
        for (int i = 0; i < 3; ++i) result[row] += static_cast<double>(m[row][i]) * static_cast<double>(in[i]);
    for (int i = 0; i < 3; ++i) out[i] = static_cast<float>(result[i]);
}

void Tv_Vector_Normalize(float* v)
{
    const double length = std::hypot(static_cast<double>(v[0]), static_cast<double>(v[1]), static_cast<double>(v[2]));
    if (!(length > 0)) return;
    for (int i = 0; i < 3; ++i) v[i] = static_cast<float>(static_cast<double>(v[i]) / length);
}

float Tv_Vector_Direction(const float* from, const float* to, float* scratch)
{
    double way[3];
    for (int i = 0; i < 3; ++i) way[i] = static_cast<double>(to[i]) - static_cast<double>(from[i]);
    const double distance = std::hypot(way[0], way[1], way[2]);
    for (int i = 0; scratch && i < 3; ++i) scratch[i] = static_cast<float>(distance > 0 ? way[i] / distance : 0);
    return static_cast<float>(distance);
}

void Tv_Vector_Scale(const float* v, float factor, float* out)
{
    for (int i = 0; i < 3; ++i) out[i] = v[i] * factor;
}

void Tv_Vector_Add(const float* a, const float* b, float* out)
{
    for (int i = 0; i < 3; ++i) out[i] = a[i] + b[i];
}

void Tv_Vector_Reflect(float* v)
{
    for (int i = 0; i < 3; ++i) v[i] = -v[i];
}

void Tv_Matrix_Identity(float (*m)[4])
{
    for (int row = 0; row < 4; ++row)
        for (int column = 0; column < 4; ++column) m[row][column] = row == column ? 1.0f : 0.0f;
}

void Tv_Matrix_Multiply(int32_t, const float (*a)[4], const float (*b)[4], float (*out)[4])
{
    tv::multiply(&a[0][0], &b[0][0], &out[0][0]);
}

void Tv_Matrix_Append_Transform(float (*m)[4], ...)
{
    TV_READ_WORDS(list, tv::Function::matrix_append_transform, m)
    for (tv::Words words(list); list.good && words.next();) {
        if (words.word() != tv::word::translate) continue;
        const float* const way = words.array<float>();
        float shift[4][4];
        Tv_Matrix_Identity(shift);
        for (int i = 0; i < 3; ++i) shift[3][i] = way[i];
        tv::multiply(&m[0][0], &shift[0][0], &m[0][0]);
    }
}

} // extern "C"
