#pragma once

#include <QLocale>
#include <QString>
#include <QVariant>

#include <cstdint>
#include <optional>

namespace lavra {

// The machine's regional setting decides how numbers are typed and shown. Tests may swap it.
QLocale machineLocale();
void setMachineLocale(const QLocale& locale);
void resetMachineLocale();

// The decimal symbol: the second character of 0.5 written as text.
QChar decimalSymbol();

// Whether the platform takes the text for a number: blanks around, a sign, thousands separators
// anywhere in the whole part, one decimal symbol and an exponent are all accepted. A test only:
// a text with a thousands separator passes it but does not read as a number.
bool isNumericText(const QString& text);
// Numbers, and texts that parseNumber reads; null, empty and other types are not numeric.
bool isNumeric(const QVariant& value);

// Reads a text under the machine's setting: blanks around, a sign, the decimal symbol and an
// exponent. A thousands separator is refused, not skipped, so that "1.5" on a comma machine or
// "80,5" on a point machine is no number rather than fifteen or 805.
std::optional<double> parseNumber(const QString& text);
// Numbers as they are, texts through parseNumber.
std::optional<double> toNumber(const QVariant& value);

// Narrowing to a 32-bit float is a loss of precision; it is named so that it can be seen.
inline float toSingle(double value) { return static_cast<float>(value); }
// The double nearest to the float's shortest decimal form: 10.1f becomes 10.1, not 10.1000003.
double widenShortest(float value);
// Conversion to a whole number rounds to nearest, ties to even.
std::int64_t roundHalfEven(double value);

// The shortest text that reads back as the same number, with the machine's decimal symbol.
QString numberText(double value);
QString numberText(float value);
// The same, for a variant: floats keep their own shortest form.
QString variantNumberText(const QVariant& value);

// Fixed decimals from the number's shortest decimal form, halves away from zero, machine's symbol.
QString formatFixed(double value, int decimals);
QString formatFixed(float value, int decimals);

} // namespace lavra
