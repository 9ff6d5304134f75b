#pragma once

// The columns of Analises by ordinal: the session's Analise holds one element per column, and
// the register, the calculation and the report read it by these positions.
namespace lavra::analise {

inline constexpr int kCodigo = 0;
inline constexpr int kCliente = 1;
inline constexpr int kLocal = 2;
inline constexpr int kFazenda = 3;
inline constexpr int kGleba = 4;
inline constexpr int kData = 5;
inline constexpr int kArea = 6;
inline constexpr int kNumAnalise = 7;
inline constexpr int kPH = 8;
inline constexpr int kCa = 9;
inline constexpr int kMg = 10;
inline constexpr int kAl = 11;
inline constexpr int kHAl = 12;
inline constexpr int kSatAl = 13;
inline constexpr int kSatBases = 14;
inline constexpr int kCTC = 15;
inline constexpr int kSMP = 16;
inline constexpr int kMO = 17;
inline constexpr int kArgila = 18;
inline constexpr int kP = 19;
inline constexpr int kK = 20;
inline constexpr int kMetodoP = 21;
inline constexpr int kArrozIrrig = 22;
// Classes of the interpretation, whole numbers.
inline constexpr int kClassePH = 27;
inline constexpr int kClasseCa = 28;
inline constexpr int kClasseMg = 29;
inline constexpr int kClasseMO = 30;
inline constexpr int kClasseP = 31;
inline constexpr int kClasseK = 32;
inline constexpr int kClasseCTC = 33;
inline constexpr int kClasseSatAl = 34;
inline constexpr int kClasseSatBases = 35;
inline constexpr int kColunas = 36;

} // namespace lavra::analise
