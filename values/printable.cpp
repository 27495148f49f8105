#include "printable.h"

#include <QtCore/QVector>

namespace qel::values {

QString printable(const QString &text)
{
    QString result;
    const QVector<uint> characters = text.toUcs4();
    for (const uint character : characters) {
        const auto category = QChar::category(character);
        const bool isShown = QChar::isPrint(character) && category != QChar::Separator_Line
            && category != QChar::Separator_Paragraph;
        const uint shown = isShown ? character : uint(QChar::ReplacementCharacter);
        result += QString::fromUcs4(&shown, 1);
    }
    return result;
}

} // namespace qel::values
