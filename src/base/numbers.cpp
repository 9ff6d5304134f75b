#include "numbers.h"

#include <charconv>
#include <cmath>
#include <string>

namespace lavra {

namespace {

std::optional<QLocale>& localeOverride()
{
    static std::optional<QLocale> locale;
    return locale;
}

template <typename T>
std::string shortestFixed(T value)
{
    char buffer[512];
    const auto result = std::to_chars(buffer, buffer + sizeof buffer, value, std::chars_format::fixed);
    return std::string(buffer, result.ptr);
}

template <typename T>
std::string shortestGeneral(T value)
{
    char buffer[64];
    const auto result = std::to_chars(buffer, buffer + sizeof buffer, value);
    return std::string(buffer, result.ptr);
}

// Rounds a plain decimal text ("-12.345") to the given decimals, halves away from zero.
std::string roundDecimalText(const std::string& text, int decimals)
{
    const bool negative = !text.empty() && text[0] == '-';
    std::string digits = negative ? text.substr(1) : text;
    const auto point = digits.find('.');
    std::string whole = point == std::string::npos ? digits : digits.substr(0, point);
    std::string fraction = point == std::string::npos ? std::string() : digits.substr(point + 1);
    if (static_cast<int>(fraction.size()) < decimals + 1)
        fraction.append(decimals + 1 - fraction.size(), '0');

    const bool roundUp = fraction[decimals] >= '5';
    std::string kept = whole + fraction.substr(0, decimals);
    if (roundUp) {
        int i = static_cast<int>(kept.size()) - 1;
        for (; i >= 0; --i) {
            if (kept[i] == '9') {
                kept[i] = '0';
            } else {
                ++kept[i];
                break;
            }
        }
        if (i < 0)
            kept.insert(kept.begin(), '1');
    }
    std::string result = kept.substr(0, kept.size() - decimals);
    if (decimals > 0)
        result += '.' + kept.substr(kept.size() - decimals);
    const bool allZero = kept.find_first_not_of('0') == std::string::npos;
    return (negative && !allZero) ? '-' + result : result;
}

QString withMachineSymbol(const std::string& plain)
{
    QString text = QString::fromStdString(plain);
    text.replace(QLatin1Char('.'), decimalSymbol());
    return text;
}

QChar groupSymbolFor(QChar decimal)
{
    const QChar group = machineLocale().groupSeparator().at(0);
    if (group != decimal)
        return group;
    return decimal == QLatin1Char(',') ? QLatin1Char('.') : QLatin1Char(',');
}

// Reads a number under the machine's setting. The platform's own test takes thousands separators
// anywhere in the whole part and skips them; a reading must not, or "1.5" typed on a comma
// machine would become fifteen.
std::optional<double> readNumber(const QString& input, bool groupsSkipped)
{
    const QString text = input.trimmed();
    const QChar decimal = decimalSymbol();
    const QChar group = groupSymbolFor(decimal);

    std::string plain;
    int i = 0;
    if (i < text.size() && (text[i] == QLatin1Char('+') || text[i] == QLatin1Char('-'))) {
        if (text[i] == QLatin1Char('-'))
            plain += '-';
        ++i;
    }
    bool seenDigit = false;
    bool seenDecimal = false;
    for (; i < text.size(); ++i) {
        const QChar c = text[i];
        if (c.isDigit() && c.unicode() < 128) {
            plain += static_cast<char>(c.unicode());
            seenDigit = true;
        } else if (c == decimal && !seenDecimal) {
            plain += '.';
            seenDecimal = true;
        } else if (c == group && !seenDecimal && groupsSkipped) {
            continue;
        } else {
            break;
        }
    }
    if (!seenDigit)
        return std::nullopt;
    if (i < text.size() && QStringLiteral("eEdD").contains(text[i])) {
        plain += 'e';
        ++i;
        if (i < text.size() && (text[i] == QLatin1Char('+') || text[i] == QLatin1Char('-')))
            plain += static_cast<char>(text[i++].unicode());
        bool exponentDigits = false;
        for (; i < text.size() && text[i].isDigit() && text[i].unicode() < 128; ++i) {
            plain += static_cast<char>(text[i].unicode());
            exponentDigits = true;
        }
        if (!exponentDigits)
            return std::nullopt;
    }
    if (i != text.size())
        return std::nullopt;

    double value = 0;
    const char* begin = plain.data();
    if (plain[0] == '-')
        ++begin;
    const auto result = std::from_chars(begin, plain.data() + plain.size(), value);
    if (result.ec != std::errc() || result.ptr != plain.data() + plain.size() || !std::isfinite(value))
        return std::nullopt;
    return plain[0] == '-' ? -value : value;
}

} // namespace

QLocale machineLocale()
{
    return localeOverride() ? *localeOverride() : QLocale::system();
}

void setMachineLocale(const QLocale& locale) { localeOverride() = locale; }
void resetMachineLocale() { localeOverride().reset(); }

QChar decimalSymbol()
{
    // The locale's own symbol is what it writes 0.5 with, and is read without formatting a number:
    // this runs for every number a query writes.
    const QString symbol = machineLocale().decimalPoint();
    return symbol.isEmpty() ? QLatin1Char('.') : symbol.at(0);
}

std::optional<double> parseNumber(const QString& text) { return readNumber(text, false); }

bool isNumericText(const QString& text) { return readNumber(text, true).has_value(); }

std::optional<double> toNumber(const QVariant& value)
{
    if (value.isNull() || !value.isValid())
        return std::nullopt;
    switch (value.typeId()) {
    case QMetaType::Float: return static_cast<double>(value.toFloat());
    case QMetaType::Double:
    case QMetaType::Int:
    case QMetaType::UInt:
    case QMetaType::LongLong:
    case QMetaType::ULongLong:
    case QMetaType::Short:
    case QMetaType::UShort:
    case QMetaType::Long:
    case QMetaType::ULong: return value.toDouble();
    case QMetaType::Bool: return value.toBool() ? -1.0 : 0.0;
    case QMetaType::QString: return parseNumber(value.toString());
    default: return std::nullopt;
    }
}

bool isNumeric(const QVariant& value) { return toNumber(value).has_value(); }

double widenShortest(float value)
{
    const std::string text = shortestGeneral(value);
    double wide = 0;
    std::from_chars(text.data(), text.data() + text.size(), wide);
    return wide;
}

std::int64_t roundHalfEven(double value)
{
    return static_cast<std::int64_t>(std::nearbyint(value));
}

// Plain digits for every figure a user meets; the exponent form only for absurd magnitudes.
QString numberText(double value)
{
    return withMachineSymbol(std::fabs(value) < 1e15 ? shortestFixed(value) : shortestGeneral(value));
}

QString numberText(float value)
{
    return withMachineSymbol(std::fabs(value) < 1e15f ? shortestFixed(value) : shortestGeneral(value));
}

QString variantNumberText(const QVariant& value)
{
    if (value.typeId() == QMetaType::Float)
        return numberText(value.toFloat());
    if (value.typeId() == QMetaType::QString)
        return value.toString();
    if (const auto number = toNumber(value))
        return numberText(*number);
    return value.toString();
}

QString formatFixed(double value, int decimals)
{
    return withMachineSymbol(roundDecimalText(shortestFixed(value), decimals));
}

QString formatFixed(float value, int decimals)
{
    return withMachineSymbol(roundDecimalText(shortestFixed(value), decimals));
}

} // namespace lavra
