#include "problem.h"

#include <algorithm>
#include <iterator>

namespace qel::values {

namespace {

struct Text
{
    Problem::Code code;
    const char *id;
    const char *line; ///< as filledIn() takes it
};

constexpr Text texts[] = {
    {Problem::JsonSize, "json-size", "%2 bytes of JSON; at most %3 are read"},
    {Problem::JsonSyntax, "json-syntax", "no JSON: %2, at byte %3"},
    {Problem::JsonSingle, "json-single", "not exactly one JSON value"},
    {Problem::ValueContent, "value-content", "%1 cannot be read as %2"},
    {Problem::ValueCount, "value-count", "%1 is beyond the %2 values allowed"},
    {Problem::ValueDepth, "value-depth", "%1 is nested deeper than %2 levels"},
    {Problem::ValueTag, "value-tag", "%1 needs \"$type\" and \"value\" and nothing else"},
    {Problem::ValueType, "value-type", "%1 is of type %2, which JSON is not defined for"},
    {Problem::ValueUnicode, "value-unicode", "%1 is no valid Unicode"},
    {Problem::ValueUnwritable, "value-unwritable", "%1 is a %2 that JSON cannot hold without loss"},
    {Problem::Missing, "missing", "%1 is missing, not %2"},
    {Problem::WrongType, "wrong-type", "%1 is %2, not %3"},
    {Problem::Unexpected, "unexpected", "%1 is %2, not invalid"},
    {Problem::WrongContent, "wrong-content", "%1 is \"%2\", not \"%3\""},
    {Problem::NotUtc, "not-utc", "%1 is not a valid time in UTC"},
    {Problem::OutOfRange, "out-of-range", "%1 is %2, which cannot be"},
    {Problem::PlateSize, "plate-impossible", "%1 has a plate of %2 by %3 wells"},
    {Problem::ReadCount, "read-count", "%1 has %2 reads, not %3"},
    {Problem::WellCount, "well-count", "%1 has %2 values for %3 by %4 wells"},
    {Problem::NotAsDescribed, "not-as-described", "%1 is %2, the descriptor says %3"},
    {Problem::NotAsConfigured, "not-as-configured", "%1 is %2, the configuration says %3"},
    {Problem::NotSelected, "not-selected", "%1 has a value for a well that was not selected"},
    {Problem::UnknownType, "unknown-type", "%1 is \"%2\", which is no type of a setting"},
    {Problem::NamesCount, "names-count", "%1 has %2 names for %3 choices"},
    {Problem::JsonDuplicateKey, "json-duplicate-key", "%1 names \"%2\" twice"},
    {Problem::SettingUnknown, "setting-unknown", "%1 is no setting; there are: %2"},
    {Problem::SettingNone, "setting-none", "%1 is no setting; there are none"},
    {Problem::SettingMissing, "setting-missing", "%1 is missing; it takes %2"},
    {Problem::SettingType, "setting-type", "%1 is %2, not %3"},
    {Problem::SettingNotAllowed, "setting-wrong", "%1 must not be %2; it takes %3"},
    {Problem::SettingLength, "setting-length", "%1 has %2 elements, not %3"},
    {Problem::SettingDigits, "setting-digits", "%1 is too long for a number in JSON"},
    {Problem::SettingEmpty, "setting-empty", "%1 is empty"},
    {Problem::ConfigurationType, "configuration-type", "the configuration is %2, not QVariantHash"},
};

const Text &textOf(Problem::Code code)
{
    return *std::find_if(std::begin(texts), std::end(texts) - 1,
                         [code](const Text &text) { return text.code == code; });
}

} // namespace

QByteArray problemId(Problem::Code code)
{
    return textOf(code).id;
}

QList<Problem::Code> problemCodes()
{
    QList<Problem::Code> codes;
    for (const Text &text : texts)
        codes += text.code;
    return codes;
}

QString filledIn(const QString &text, const Problem &problem)
{
    QString result;
    for (int i = 0; i < text.size(); ++i) {
        const int place = text[i] == u'%' && i + 1 < text.size() ? text[i + 1].digitValue() : -1;
        if (place < 1) {
            result += text[i];
            continue;
        }
        result += place == 1 ? problem.path : problem.details.value(place - 2);
        ++i;
    }
    return result;
}

QString toString(const Problem &problem)
{
    return filledIn(QString::fromLatin1(textOf(problem.code).line), problem);
}

QString toString(const QVector<Problem> &problems)
{
    QStringList lines;
    for (const Problem &problem : problems)
        lines += toString(problem);
    return lines.join(QStringLiteral("; "));
}

} // namespace qel::values
