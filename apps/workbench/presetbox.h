#ifndef QELWORKBENCH_PRESETBOX_H
#define QELWORKBENCH_PRESETBOX_H

#include <QtCore/QJsonObject>
#include <QtWidgets/QWidget>

class QComboBox;
class QPushButton;

namespace qelworkbench {

class SettingsForm;

/// Settings under a name: chosen here, they go into the form; saved here, they come from it.
class PresetBox : public QWidget
{
    Q_OBJECT

public:
    explicit PresetBox(SettingsForm *form, QWidget *parent = nullptr);

    /// Offers the presets of a feature; an empty name stands for none.
    void setFeature(const QString &name);
    /// Keeps what is in the form under `name`. False when the form refuses what was entered.
    bool save(const QString &name);

protected:
    void changeEvent(QEvent *event) override;

private:
    QString group() const;
    void fill();
    void use(int index);
    void askAndSave();
    void retranslate();

    SettingsForm *m_form;
    QString m_feature;
    QComboBox *m_names;
    QPushButton *m_save;
};

} // namespace qelworkbench

#endif
