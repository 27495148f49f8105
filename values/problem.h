/// @file
/// What is wrong with a value, as a value.
#ifndef QELVALUES_PROBLEM_H
#define QELVALUES_PROBLEM_H

#include <QtCore/QByteArray>
#include <QtCore/QList>
#include <QtCore/QString>
#include <QtCore/QStringList>

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
    };

    Code code = JsonSyntax;
    QString path;        ///< the place, for instance "$.values[1]"; empty for the whole
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

} // namespace qel::values

#endif
