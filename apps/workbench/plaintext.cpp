#include "plaintext.h"

#include "text.h"

#include <qelvalues/valuecodec.h>

#include <QtCore/QDateTime>
#include <QtCore/QJsonObject>
#include <QtCore/QStringList>

#include <algorithm>

namespace qelworkbench {

QString plainText(const QVariant &value)
{
    if (!value.isValid())
        return text("qelworkbench-done");
    if (value.userType() == QMetaType::Double)
        return valueText(value.toDouble());
    if (value.userType() == QMetaType::Bool)
        return text(value.toBool() ? "qelworkbench-yes" : "qelworkbench-no");
    if (value.userType() == QMetaType::QDateTime)
        return QLocale().toString(value.toDateTime().toLocalTime(),
                                  text("qelworkbench-time-format"));
    if (value.userType() == QMetaType::QDate)
        return QLocale().toString(value.toDate(), QLocale::ShortFormat);
    if (value.userType() == QMetaType::QVariantHash) {
        const QVariantHash hash = value.toHash();
        QStringList keys = hash.keys();
        std::sort(keys.begin(), keys.end());
        QStringList lines;
        for (const QString &key : qAsConst(keys))
            lines.append(settingTitle(key) + QStringLiteral(": ") + plainText(hash.value(key)));
        return lines.join(QLatin1Char('\n'));
    }
    if (value.canConvert<QString>())
        return value.toString();
    qel::values::Problem ignored;
    const auto json = qel::values::toJson(value, &ignored);
    return json
        ? QString::fromUtf8(qel::values::jsonText(json->toObject().value(QStringLiteral("value"))))
        : QString();
}

} // namespace qelworkbench
