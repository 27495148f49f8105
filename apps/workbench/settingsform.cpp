#include "settingsform.h"

#include "settinginputs.h"
#include "text.h"

#include <QtCore/QEvent>
#include <QtWidgets/QFormLayout>
#include <QtWidgets/QLabel>

#include <algorithm>

namespace qelworkbench {

using qel::values::Setting;

SettingsForm::SettingsForm(QWidget *parent)
    : QWidget(parent)
    , m_layout(new QFormLayout(this))
{
    m_layout->setContentsMargins({});
    m_layout->setRowWrapPolicy(QFormLayout::WrapAllRows);
    m_layout->setVerticalSpacing(10);
}

bool SettingsForm::setDescriptor(const QVariant &descriptor)
{
    if (descriptor == m_descriptor)
        return false;
    m_descriptor = descriptor;
    m_fields.clear();
    while (m_layout->rowCount() > 0)
        m_layout->removeRow(0);
    QVector<Setting> settings = qel::values::settingsOf(descriptor);
    // What is measured before how.
    std::stable_partition(settings.begin(), settings.end(), [](const Setting &setting) {
        return setting.kind != qel::values::Kind::Bool;
    });
    for (const Setting &setting : qAsConst(settings)) {
        SettingField *field = makeSettingField(setting, descriptor, this);
        if (field->hasOwnLabel()) {
            m_layout->addRow(field);
        } else {
            auto *label = new QLabel(this);
            label->setBuddy(field->focusProxy() ? field->focusProxy() : field);
            m_layout->addRow(label, field);
        }
        m_fields.append(field);
        connect(field, &SettingField::edited, this, &SettingsForm::edited);
    }
    retranslate();
    return true;
}

std::optional<QJsonObject> SettingsForm::configuration()
{
    QJsonObject configuration;
    SettingField *wrong = nullptr;
    for (SettingField *field : qAsConst(m_fields)) {
        if (!field->addTo(&configuration) && !wrong)
            wrong = field;
    }
    if (!wrong)
        return configuration;
    wrong->setFocus();
    return {};
}

void SettingsForm::setConfiguration(const QJsonObject &configuration)
{
    for (SettingField *field : qAsConst(m_fields)) {
        if (configuration.contains(field->key()))
            field->setValue(configuration.value(field->key()));
    }
}

void SettingsForm::changeEvent(QEvent *event)
{
    if (event->type() == QEvent::LanguageChange)
        retranslate();
    QWidget::changeEvent(event);
}

void SettingsForm::retranslate()
{
    for (SettingField *field : qAsConst(m_fields)) {
        if (auto *label = qobject_cast<QLabel *>(m_layout->labelForField(field)))
            label->setText(settingTitle(field->key()));
        field->retranslate();
    }
}

} // namespace qelworkbench
