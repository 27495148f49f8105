#ifndef QELWORKBENCH_SETTINGSFORM_H
#define QELWORKBENCH_SETTINGSFORM_H

#include "settingfield.h"

#include <optional>

class QFormLayout;

namespace qelworkbench {

/// The settings of a feature as a form, made from the feature's descriptor.
class SettingsForm : public QWidget
{
    Q_OBJECT

public:
    explicit SettingsForm(QWidget *parent = nullptr);

    /// Makes the form anew. What was entered stays where the descriptor stays, and false is
    /// returned.
    bool setDescriptor(const QVariant &descriptor);

    /// What was entered, as readConfiguration() takes it. Nothing, with the first field that is
    /// wrong in focus, when there is one.
    std::optional<QJsonObject> configuration();

    /// Shows a configuration; settings that it lacks stay.
    void setConfiguration(const QJsonObject &configuration);

Q_SIGNALS:
    void edited();

protected:
    void changeEvent(QEvent *event) override;

private:
    void retranslate();

    QVariant m_descriptor;
    QFormLayout *m_layout;
    QList<SettingField *> m_fields;
};

} // namespace qelworkbench

#endif
