/// \file
/// Small number functions. The float ones work in single precision at each step, on every platform
/// (IEEE 754), and pass a NaN on where it is not said otherwise. Nothing is refused.
#pragma once

#pragma GCC visibility push(default)

/// \return the smaller of two integers.
int min_int(int a, int b);
/// \return the larger of two integers.
int max_int(int a, int b);
/// \return \p low when \p x is below it, otherwise the smaller of \p x and \p high.
int clamp_int(int x, int low, int high);
/// \return the absolute value; the least integer has none and stays itself.
int abs_int(int x);

/// \return the smaller of two floats; of a number and a NaN, the number.
float min_float(float a, float b);
/// \return the larger of two floats; of a number and a NaN, the number.
float max_float(float a, float b);
/// \return \p low when \p x is below it or either of them is a NaN, otherwise the smaller of \p x
/// and \p high.
float clamp_float(float x, float low, float high);
/// \return the float with its sign bit cleared, a NaN's too.
float abs_float(float x);

/// \return a + (b - a) * t; \p t may be outside 0 to 1.
float lerp_float(float a, float b, float t);
/// Maps \p x from the range a..b to c..d. \return c + (x - a) / (b - a) * (d - c); \p c when b - a
/// is 0.
float remap_float(float x, float a, float b, float c, float d);
/// \return remap_float(), raised to \p c when below it and then lowered to \p d when above it; the
/// smaller of \p c and \p d when \p a equals \p b.
float remap_clamped_float(float x, float a, float b, float c, float d);

/// \return the distance of two points in the plane; infinite where the squares are.
float distance_2d(float x1, float y1, float x2, float y2);

/// \return y * (x / y - floor(x / y)): the remainder with the sign of \p y; a NaN when \p y is 0.
float modulo_float(float x, float y);
/// \return x - floor(x).
float fraction_float(float x);
/// \return the multiple of \p y at or below \p x (at or above for a negative \p y): y * floor(x /
/// y); a NaN when \p y is 0.
float floor_to_step(float x, float y);
/// \return the multiple of \p y nearest to \p x, halves upwards (downwards for a negative \p y):
/// y * floor((x + y * 0.5) / y), where the quotient is computed in double precision and rounded to
/// single before the floor; a NaN when \p y is 0.
float round_to_step(float x, float y);

/// \return a repeatable pseudo-random value made of the bits of \p x * 2^33, a NaN's too, in [-32,
/// 32]: the greatest eight bit patterns round up to 32.
float hash_noise_float(float x);

#pragma GCC visibility pop
