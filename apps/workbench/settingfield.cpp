#include "settingfield.h"

#include "text.h"

#include <qelfrontend/configuration.h>

#include <QtWidgets/QLabel>
#include <QtWidgets/QVBoxLayout>

namespace qelworkbench {

using namespace qel::frontend;
using qel::values::Kind;

SettingField::SettingField(qel::values::Setting setting, const QVariant &descriptor,
                           QWidget *parent)
    : QWidget(parent)
    , m_setting(std::move(setting))
    , m_descriptor(descriptor)
    , m_hint(new QLabel(this))
{
    m_hint->setWordWrap(true);
    m_hint->setContentsMargins(2, 0, 0, 4);
    m_hint->setObjectName(m_setting.key + QStringLiteral("Hint"));
    auto *layout = new QVBoxLayout(this);
    layout->setContentsMargins({});
    layout->setSpacing(2);
    layout->addWidget(m_hint);
}

void SettingField::setInput(QWidget *input, QWidget *focus)
{
    static_cast<QVBoxLayout *>(layout())->insertWidget(0, input);
    setFocusProxy(focus);
    showHint();
}

QJsonValue SettingField::defaultValue() const
{
    if (!m_setting.fallback.isValid())
        return QJsonValue::Undefined;
    return writeConfiguration(QVariantHash{{m_setting.key, m_setting.fallback}}, m_descriptor)
        .value(m_setting.key);
}

bool SettingField::hasOwnLabel() const
{
    return m_setting.kind == Kind::Bool;
}

QString SettingField::key() const
{
    return m_setting.key;
}

QString SettingField::problem() const
{
    return m_problem;
}

bool SettingField::addTo(QJsonObject *configuration)
{
    check();
    QString ignored;
    const QJsonValue entered = value(&ignored);
    if (m_problem.isEmpty() && !entered.isUndefined())
        configuration->insert(m_setting.key, entered);
    return m_problem.isEmpty();
}

void SettingField::check()
{
    QString problem;
    const QJsonValue entered = value(&problem);
    if (problem.isEmpty()) {
        // Other settings may be required; what is said without this one is about them.
        QStringList others;
        QStringList all;
        const QJsonObject own =
            entered.isUndefined() ? QJsonObject() : QJsonObject{{m_setting.key, entered}};
        const QJsonValue standard = defaultValue();
        if (!standard.isUndefined())
            readConfiguration({{m_setting.key, standard}}, m_descriptor, &others);
        readConfiguration(own, m_descriptor, &all);
        for (const QString &one : qAsConst(all)) {
            if (!others.contains(one) && one.contains(m_setting.key))
                problem = one;
        }
    }
    m_problem = sentence(problem);
    showHint();
    Q_EMIT edited();
}

void SettingField::retranslate()
{
    if (focusProxy())
        focusProxy()->setAccessibleName(settingTitle(m_setting.key));
    check();
}

void SettingField::showHint()
{
    const bool isWrong = !m_problem.isEmpty();
    const QString allowed = describeSetting(m_setting.key, m_descriptor);
    m_hint->setText(isWrong ? m_problem : sentence(allowed));
    const bool isObvious = !m_setting.choices.isEmpty() || m_setting.kind == Kind::Bool;
    m_hint->setVisible(isWrong || !isObvious);
    QPalette colors = palette();
    const bool isDark = colors.color(QPalette::Window).lightness() < 128;
    const QColor quiet = isDark ? QColor(0xb8, 0xb8, 0xb8) : QColor(0x5a, 0x5a, 0x5a);
    const QColor loud = isDark ? QColor(0xff, 0x8a, 0x80) : QColor(0xb0, 0x00, 0x20);
    colors.setColor(QPalette::WindowText, isWrong ? loud : quiet);
    m_hint->setPalette(colors);
    if (focusProxy())
        focusProxy()->setAccessibleDescription(m_hint->text());
}

} // namespace qelworkbench
