#ifndef QELWORKBENCH_SETTINGFIELD_H
#define QELWORKBENCH_SETTINGFIELD_H

#include <qelvalues/settings.h>

#include <QtCore/QJsonObject>
#include <QtCore/QVariant>
#include <QtWidgets/QWidget>

class QLabel;

namespace qelworkbench {

/// One setting of a feature as an input. Below it stands what is allowed, or what is wrong.
class SettingField : public QWidget
{
    Q_OBJECT

public:
    QString key() const;
    /// Whether the title of the setting stands in the field itself.
    bool hasOwnLabel() const;

    /// Adds the setting to `configuration`, unless it is left to the default.
    /// @return false, and the field shows why, when the input is refused
    bool addTo(QJsonObject *configuration);

    /// Shows a value in the form that readConfiguration() takes.
    virtual void setValue(const QJsonValue &value) = 0;

    /// Says what is allowed, in the present language.
    virtual void retranslate();

    /// What is wrong; empty when nothing is.
    QString problem() const;

Q_SIGNALS:
    void edited();

protected:
    SettingField(qel::values::Setting setting, const QVariant &descriptor, QWidget *parent);

    /// Puts the input above the hint. The label's buddy and the screen reader's name go to `focus`.
    void setInput(QWidget *input, QWidget *focus);
    /// What was entered; undefined for the default.
    virtual QJsonValue value(QString *problem) const = 0;
    /// To be called after each edit.
    void check();

    /// The default in the form of setValue(); undefined when there is none.
    QJsonValue defaultValue() const;

    const qel::values::Setting m_setting;
    const QVariant m_descriptor; // of all settings together

private:
    void showHint();

    QLabel *m_hint;
    QString m_problem;
};

} // namespace qelworkbench

#endif
