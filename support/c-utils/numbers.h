/// \file
/// Small number functions.
///
/// The float functions round to single precision at each step, on every platform (IEEE 754), and
/// propagate a NaN except where documented otherwise. They accept every argument.
#pragma once

#pragma GCC visibility push(default)

/// Returns the smaller of two integers.
/// \param a,b the integers
/// \return the smaller one.
int min_int(int a, int b);

/// Returns the larger of two integers.
/// \param a,b the integers
/// \return the larger one.
int max_int(int a, int b);

/// Clamps an integer to a range.
/// \param x the integer
/// \param low,high the range
/// \return \p low if \p x is below it, otherwise the smaller of \p x and \p high.
int clamp_int(int x, int low, int high);

/// Returns the absolute value of an integer.
/// \param x the integer
/// \return the absolute value; the least integer is returned unchanged.
int abs_int(int x);

/// Returns the smaller of two floats.
/// \param a,b the floats
/// \return the smaller one; if one is a NaN, the other.
float min_float(float a, float b);

/// Returns the larger of two floats.
/// \param a,b the floats
/// \return the larger one; if one is a NaN, the other.
float max_float(float a, float b);

/// Clamps a float to a range.
/// \param x the float
/// \param low,high the range
/// \return \p low if \p x is below it or either of them is a NaN, otherwise the smaller of \p x and
/// \p high.
float clamp_float(float x, float low, float high);

/// Clears the sign bit of a float, also of a NaN.
/// \param x the float
/// \return the absolute value.
float abs_float(float x);

/// Interpolates linearly between two floats.
/// \param a,b the results for \p t 0 and 1
/// \param t the position; may be outside 0 to 1
/// \return a + (b - a) * t.
float lerp_float(float a, float b, float t);

/// Maps \p x linearly from one range to another.
/// \param x the float
/// \param a,b the source range
/// \param c,d the target range
/// \return c + (x - a) / (b - a) * (d - c), or \p c if b - a is 0.
float remap_float(float x, float a, float b, float c, float d);

/// Maps \p x as remap_float() does, and clamps the result to the target range.
/// \param x the float
/// \param a,b the source range
/// \param c,d the target range
/// \return the result of remap_float(), raised to \p c if below it, and then lowered to \p d if
/// above it; the smaller of \p c and \p d if \p a equals \p b.
float remap_clamped_float(float x, float a, float b, float c, float d);

/// Returns the distance of two points in the plane.
/// \param x1,y1 the first point
/// \param x2,y2 the second point
/// \return the distance; infinity if a square overflows.
float distance_2d(float x1, float y1, float x2, float y2);

/// Returns a remainder with the sign of the divisor.
/// \param x the dividend
/// \param y the divisor
/// \return y * (x / y - floor(x / y)), or a NaN if \p y is 0.
float modulo_float(float x, float y);

/// Returns the fraction of a float.
/// \param x the float
/// \return x - floor(x).
float fraction_float(float x);

/// Rounds down to a multiple of a step (up if the step is negative).
/// \param x the float
/// \param y the step
/// \return y * floor(x / y), or a NaN if \p y is 0.
float floor_to_step(float x, float y);

/// Rounds to the nearest multiple of a step, halves upwards (downwards if the step is negative).
/// \param x the float
/// \param y the step
/// \return y * floor((x + y * 0.5) / y), where the quotient is computed in double precision and
/// rounded to single before the floor; a NaN if \p y is 0.
float round_to_step(float x, float y);

/// Hashes a float to a repeatable pseudo-random value.
/// \param x its product with 2^33 is hashed by its bits, also if it is a NaN
/// \return a value in [-32, 32]: the greatest eight bit patterns round up to 32.
float hash_noise_float(float x);

#pragma GCC visibility pop
