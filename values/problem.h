/// @file
/// What is wrong with a value, as a value.
#ifndef QELVALUES_PROBLEM_H
#define QELVALUES_PROBLEM_H

#include <QtCore/QByteArray>
#include <QtCore/QList>
#include <QtCore/QString>
#include <QtCore/QStringList>
#include <QtCore/QVector>

namespace qel::values {

/// One thing that is wrong with a value. It says nothing in any language: a front end makes a
/// sentence of it, toString() a line for logs.
struct Problem
{
    /// What is wrong. Codes are added at the end; the comment names the details.
    enum Code {
        JsonSize,        ///< a JSON text is too long: its bytes, the most allowed
        JsonSyntax,      ///< a text is no JSON: the parser's words, the position in bytes
        JsonSingle,      ///< a text is not exactly one JSON value
        ValueContent,    ///< cannot be read as a type: the type
        ValueCount,      ///< too many values: the most allowed
        ValueDepth,      ///< nested too deeply: the most levels allowed
        ValueTag,        ///< a tagged object has other keys than "$type" and "value"
        ValueType,       ///< of a type that JSON is not defined for: the type
        ValueUnicode,    ///< no valid Unicode
        ValueUnwritable, ///< JSON cannot hold it without loss: the type

        // What a device hands out. The path says whether it is its result, descriptor or transient.
        Missing,         ///< there is no value: the type wanted
        WrongType,       ///< of another type: the type, the type wanted
        Unexpected,      ///< a value where none belongs: the type
        WrongContent,    ///< not what it has to be: what it is, what it has to be
        NotUtc,          ///< no valid time, or not in UTC
        OutOfRange,      ///< a number that cannot be: the number
        PlateSize,       ///< no plate is that size: rows, columns
        ReadCount,       ///< reads too many or too few: the number, the number wanted
        WellCount,       ///< a read of another size than its plate: its values, rows, columns
        NotAsDescribed,  ///< differs from the descriptor: what it is, what the descriptor says
        NotAsConfigured, ///< differs from the configuration: what it is, what was configured
        NotSelected,     ///< a value for a well that was not to be measured
        UnknownType,     ///< names a type that no setting has: the name
        NamesCount,      ///< names too many or too few: their number, the number of choices

        JsonDuplicateKey, ///< an object names a key twice: the key

        // Configurations. The path is the key of a setting, with an index for an element.
        SettingUnknown,    ///< there is no such setting: those there are
        SettingNone,       ///< the feature has no settings
        SettingMissing,    ///< a required setting is missing: what it may be
        SettingType,       ///< of another type: the type, the type wanted
        SettingNotAllowed, ///< outside the limits: what was given, what it may be
        SettingLength,     ///< a list of another length: its length, the length wanted
        SettingDigits,     ///< a whole number that JSON may have rounded
        SettingEmpty,      ///< an empty text where a list or its element belongs
        ConfigurationType, ///< the whole configuration is no hash: its type
    };

    Code code = JsonSyntax; ///< what is wrong
    /// The place: "$.values[1]" in JSON, "result.values[1]" in what a device hands out. Empty for
    /// a whole JSON text.
    QString path;
    QStringList details; ///< as the code says; texts from outside as they came
};

/// The code's name in programs and documents, for instance "value-depth".
QByteArray problemId(Problem::Code code);

/// All codes, in their order.
QList<Problem::Code> problemCodes();

/// `text` with the problem's path in place of "%1" and its details in place of "%2" and on: how a
/// front end makes a sentence. Places in the path and the details themselves are left alone.
QString filledIn(const QString &text, const Problem &problem);

/// The problem as one line for logs and for developers, in English.
QString toString(const Problem &problem);

/// The problems as one line, with semicolons in between; empty when there are none.
QString toString(const QVector<Problem> &problems);

} // namespace qel::values

#endif
