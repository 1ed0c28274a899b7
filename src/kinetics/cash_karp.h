// Coefficients of the embedded Runge-Kutta pair of Cash & Karp (1990), ACM Trans. Math. Softw. 16, 201-222,
// held as 32-bit floats. A2..A6 are the nodes, B the weights of earlier slopes, C those of the fifth-order
// solution, and D the difference of C from the weights of the embedded fourth-order solution.
#pragma once

namespace zelvane::cash_karp {

constexpr float Float(double value) {
  return static_cast<float>(value);
}

inline constexpr float A2 = 0.2F;
inline constexpr float A3 = 0.3F;
inline constexpr float A4 = 0.6F;
inline constexpr float A5 = 1.0F;
inline constexpr float A6 = 0.875F;
inline constexpr float B21 = 0.2F;
inline constexpr float B31 = Float(3.0 / 40.0);
inline constexpr float B32 = Float(9.0 / 40.0);
inline constexpr float B41 = 0.3F;
inline constexpr float B42 = -0.9F;
inline constexpr float B43 = 1.2F;
inline constexpr float B51 = Float(-11.0 / 54.0);
inline constexpr float B52 = 2.5F;
inline constexpr float B53 = Float(-70.0 / 27.0);
inline constexpr float B54 = Float(35.0 / 27.0);
inline constexpr float B61 = Float(1631.0 / 55296.0);
inline constexpr float B62 = Float(175.0 / 512.0);
inline constexpr float B63 = Float(575.0 / 13824.0);
inline constexpr float B64 = Float(44275.0 / 110592.0);
inline constexpr float B65 = Float(253.0 / 4096.0);
inline constexpr float C1 = Float(37.0 / 378.0);
inline constexpr float C3 = Float(250.0 / 621.0);
inline constexpr float C4 = Float(125.0 / 594.0);
inline constexpr float C6 = Float(512.0 / 1771.0);
inline constexpr float D1 = Float(double{C1} - 2825.0 / 27648.0);
inline constexpr float D3 = Float(double{C3} - 18575.0 / 48384.0);
inline constexpr float D4 = Float(double{C4} - 13525.0 / 55296.0);
inline constexpr float D5 = Float(-277.0 / 14336.0);
inline constexpr float D6 = Float(double{C6} - 0.25);

}  // namespace zelvane::cash_karp
