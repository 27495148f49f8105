#include "presetbox.h"

#include "settingsform.h"
#include "text.h"

#include <qelvalues/valuecodec.h>

#include <QtCore/QEvent>
#include <QtCore/QSettings>
#include <QtWidgets/QComboBox>
#include <QtWidgets/QHBoxLayout>
#include <QtWidgets/QInputDialog>
#include <QtWidgets/QPushButton>

namespace qelworkbench {

PresetBox::PresetBox(SettingsForm *form, QWidget *parent)
    : QWidget(parent)
    , m_form(form)
    , m_names(new QComboBox(this))
    , m_save(new QPushButton(this))
{
    m_names->setObjectName(QStringLiteral("preset"));
    m_names->setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
    m_save->setObjectName(QStringLiteral("savePreset"));
    setFocusProxy(m_names);
    auto *layout = new QHBoxLayout(this);
    layout->setContentsMargins({});
    layout->addWidget(m_names, 1);
    layout->addWidget(m_save);
    connect(m_names, QOverload<int>::of(&QComboBox::activated), this, &PresetBox::use);
    connect(m_save, &QPushButton::clicked, this, &PresetBox::askAndSave);
    retranslate();
}

void PresetBox::setFeature(const QString &name)
{
    if (name == m_feature)
        return;
    m_feature = name;
    fill();
}

QString PresetBox::group() const
{
    return QStringLiteral("presets/") + m_feature;
}

void PresetBox::fill()
{
    QSettings settings;
    settings.beginGroup(group());
    m_names->clear();
    m_names->addItem(text("qelworkbench-preset-none"));
    if (!m_feature.isEmpty())
        m_names->addItems(settings.childKeys());
}

void PresetBox::use(int index)
{
    if (index < 1)
        return;
    QSettings settings;
    settings.beginGroup(group());
    qel::values::Problem ignored; // of a file that somebody has edited
    const auto json =
        qel::values::parseJson(settings.value(m_names->itemText(index)).toByteArray(), &ignored);
    if (json && json->isObject())
        m_form->setConfiguration(json->toObject());
}

bool PresetBox::save(const QString &name)
{
    const auto configuration = m_form->configuration();
    if (!configuration)
        return false;
    // A slash would make a group of it.
    const QString key = QString(name).replace(QLatin1Char('/'), QLatin1Char('-'));
    QSettings settings;
    settings.beginGroup(group());
    settings.setValue(key, qel::values::jsonText(*configuration));
    settings.sync();
    fill();
    m_names->setCurrentText(key);
    return true;
}

void PresetBox::askAndSave()
{
    // Refused input is shown before anybody thinks of a name.
    if (m_feature.isEmpty() || !m_form->configuration())
        return;
    const QString suggestion = m_names->currentIndex() > 0 ? m_names->currentText() : QString();
    const QString name =
        QInputDialog::getText(this, text("qelworkbench-preset-save"),
                              text("qelworkbench-preset-name"), QLineEdit::Normal, suggestion)
            .trimmed();
    if (!name.isEmpty())
        save(name);
}

void PresetBox::changeEvent(QEvent *event)
{
    if (event->type() == QEvent::LanguageChange)
        retranslate();
    QWidget::changeEvent(event);
}

void PresetBox::retranslate()
{
    m_names->setAccessibleName(text("qelworkbench-preset"));
    m_save->setText(text("qelworkbench-preset-save"));
    if (m_names->count() > 0)
        m_names->setItemText(0, text("qelworkbench-preset-none"));
}

} // namespace qelworkbench
