#include "settinginputs.h"

#include "plateview.h"
#include "text.h"

#include <qelfrontend/configuration.h>
#include <qelfrontend/wells.h>

#include <QtCore/QJsonArray>
#include <QtWidgets/QCheckBox>
#include <QtWidgets/QColorDialog>
#include <QtWidgets/QComboBox>
#include <QtWidgets/QDialog>
#include <QtWidgets/QDialogButtonBox>
#include <QtWidgets/QFileDialog>
#include <QtWidgets/QGridLayout>
#include <QtWidgets/QLabel>
#include <QtWidgets/QLineEdit>
#include <QtWidgets/QPushButton>

namespace qelworkbench {

using namespace qel::frontend;
using qel::values::Kind;
using qel::values::Setting;

namespace {

// A number as people write it, without the quotation marks and brackets of JSON.
QString plainText(const QJsonValue &value)
{
    if (value.isArray()) {
        QStringList parts;
        const QJsonArray array = value.toArray();
        for (const QJsonValue &part : array)
            parts.append(plainText(part));
        return parts.join(QStringLiteral(", "));
    }
    return value.isDouble() ? QLocale::c().toString(value.toDouble(), 'g', 15) : value.toString();
}

// Numbers, lists without choices, texts, files, wells: what has no better input.
class TextField : public SettingField
{
public:
    TextField(Setting setting, const QVariant &descriptor, QWidget *parent)
        : SettingField(std::move(setting), descriptor, parent)
    {
        auto *input = new QWidget(this);
        auto *layout = new QHBoxLayout(input);
        layout->setContentsMargins({});
        m_edit = new QLineEdit(input);
        m_edit->setObjectName(m_setting.key);
        layout->addWidget(m_edit);
        const QString unit =
            m_setting.kind == Kind::Milliseconds ? QStringLiteral("ms") : m_setting.unit;
        if (!unit.isEmpty())
            layout->addWidget(new QLabel(unit, input));
        if (isFile() || isWells()) {
            m_pick = new QPushButton(input);
            layout->addWidget(m_pick);
            connect(m_pick, &QPushButton::clicked, this, [this] { pick(); });
        }
        connect(m_edit, &QLineEdit::textEdited, this, [this] { check(); });
        setInput(input, m_edit);
        setValue(defaultValue());
        TextField::retranslate();
    }

    void setValue(const QJsonValue &value) override
    {
        QString shown = plainText(value);
        if (isFile() && shown.startsWith(QLatin1Char('@')))
            shown.remove(0, 1);
        m_edit->setText(shown);
        check();
    }

    void retranslate() override
    {
        SettingField::retranslate();
        if (m_pick)
            m_pick->setText(text(isFile() ? "qelworkbench-pick-file" : "qelworkbench-pick-wells"));
        if (isWells())
            m_edit->setPlaceholderText(text("qelworkbench-all-wells"));
    }

protected:
    QJsonValue value(QString *problem) const override
    {
        QString entered = m_edit->text().trimmed();
        if (entered.isEmpty() && m_setting.kind != Kind::Text)
            return QJsonValue::Undefined;
        if (isWells())
            return entered;
        if (isFile())
            return QLatin1Char('@') + entered;
        // A comma in a single number can only be a decimal one.
        if (m_setting.kind == Kind::Number)
            entered.replace(QLatin1Char(','), QLatin1Char('.'));
        entered.replace(QStringLiteral(", "), QStringLiteral(","));
        QJsonObject configuration;
        if (!assignSetting(&configuration, m_setting.key + QLatin1Char('=') + entered, m_descriptor,
                           problem))
            return QJsonValue::Undefined;
        return configuration.value(m_setting.key);
    }

private:
    bool isFile() const
    {
        return m_setting.kind == Kind::Bytes;
    }

    bool isWells() const
    {
        return m_setting.kind == Kind::Wells;
    }

    void pick()
    {
        if (isFile()) {
            const QString file = QFileDialog::getOpenFileName(this);
            if (!file.isEmpty())
                m_edit->setText(file);
        } else {
            pickWells();
        }
        check();
        Q_EMIT edited();
    }

    void pickWells()
    {
        const QVariantHash all = m_descriptor.toHash();
        PlatePicture plate;
        plate.rows = all.value(QStringLiteral("rows")).toInt();
        plate.columns = all.value(QStringLiteral("columns")).toInt();
        QDialog dialog(this);
        dialog.setWindowTitle(settingTitle(m_setting.key));
        auto *view = new PlateView(&dialog);
        view->setAccessibleName(settingTitle(m_setting.key));
        view->setPicture(plate);
        QString ignored;
        if (const auto wells = readWells(m_edit->text(), plate.rows, plate.columns, &ignored))
            view->setSelection(*wells);
        auto *buttons =
            new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel, &dialog);
        connect(buttons, &QDialogButtonBox::accepted, &dialog, &QDialog::accept);
        connect(buttons, &QDialogButtonBox::rejected, &dialog, &QDialog::reject);
        auto *layout = new QVBoxLayout(&dialog);
        layout->addWidget(new QLabel(text("qelworkbench-pick-wells-hint"), &dialog));
        layout->addWidget(view, 1);
        layout->addWidget(buttons);
        if (dialog.exec() == QDialog::Accepted)
            m_edit->setText(writeWells(view->selection(), plate.columns));
    }

    QLineEdit *m_edit;
    QPushButton *m_pick = nullptr;
};

class FlagField : public SettingField
{
public:
    FlagField(Setting setting, const QVariant &descriptor, QWidget *parent)
        : SettingField(std::move(setting), descriptor, parent)
        , m_box(new QCheckBox(this))
    {
        m_box->setObjectName(m_setting.key);
        setInput(m_box, m_box);
        connect(m_box, &QCheckBox::toggled, this, [this] { check(); });
        setValue(defaultValue());
        FlagField::retranslate();
    }

    void setValue(const QJsonValue &value) override
    {
        m_box->setChecked(value.toBool());
    }

    void retranslate() override
    {
        SettingField::retranslate();
        m_box->setText(settingTitle(m_setting.key));
    }

protected:
    QJsonValue value(QString *) const override
    {
        return m_box->isChecked();
    }

private:
    QCheckBox *m_box;
};

// The choices of a setting under their names.
class ChoiceField : public SettingField
{
protected:
    ChoiceField(Setting setting, const QVariant &descriptor, QWidget *parent)
        : SettingField(std::move(setting), descriptor, parent)
    { }

    QString title(int choice) const
    {
        return choice < m_setting.names.size()
            ? m_setting.names[choice]
            : QStringLiteral("%1 %2")
                  .arg(m_setting.choices[choice].toString(), m_setting.unit)
                  .trimmed();
    }

    // The form in which readConfiguration() takes it.
    QJsonValue json(int choice) const
    {
        return choice < m_setting.names.size() ? QJsonValue(m_setting.names[choice])
                                               : QJsonValue::fromVariant(m_setting.choices[choice]);
    }

    bool stands(int choice, const QJsonValue &value) const
    {
        return value == json(choice) || value == QJsonValue::fromVariant(m_setting.choices[choice]);
    }
};

class OneOfField : public ChoiceField
{
public:
    OneOfField(Setting setting, const QVariant &descriptor, QWidget *parent)
        : ChoiceField(std::move(setting), descriptor, parent)
        , m_box(new QComboBox(this))
    {
        for (int i = 0; i < m_setting.choices.size(); ++i)
            m_box->addItem(title(i));
        m_box->setObjectName(m_setting.key);
        setInput(m_box, m_box);
        connect(m_box, QOverload<int>::of(&QComboBox::currentIndexChanged), this,
                [this] { check(); });
        setValue(defaultValue());
    }

    void setValue(const QJsonValue &value) override
    {
        for (int i = 0; i < m_setting.choices.size(); ++i) {
            if (stands(i, value))
                m_box->setCurrentIndex(i);
        }
        check();
    }

protected:
    QJsonValue value(QString *) const override
    {
        return m_box->currentIndex() < 0 ? QJsonValue(QJsonValue::Undefined)
                                         : json(m_box->currentIndex());
    }

private:
    QComboBox *m_box;
};

class SeveralOfField : public ChoiceField
{
public:
    SeveralOfField(Setting setting, const QVariant &descriptor, QWidget *parent)
        : ChoiceField(std::move(setting), descriptor, parent)
    {
        auto *input = new QWidget(this);
        auto *layout = new QGridLayout(input);
        layout->setContentsMargins({});
        for (int i = 0; i < m_setting.choices.size(); ++i) {
            auto *box = new QCheckBox(title(i), input);
            box->setObjectName(m_setting.key + m_setting.choices[i].toString());
            layout->addWidget(box, i / 2, i % 2);
            connect(box, &QCheckBox::toggled, this, [this] { check(); });
            m_boxes.append(box);
        }
        setInput(input, m_boxes.value(0, nullptr));
        setValue(defaultValue());
    }

    void setValue(const QJsonValue &value) override
    {
        const QJsonArray values = value.toArray();
        for (int i = 0; i < m_boxes.size(); ++i) {
            bool isSet = false;
            for (const QJsonValue &one : values)
                isSet = isSet || stands(i, one);
            m_boxes[i]->setChecked(isSet);
        }
        check();
    }

protected:
    QJsonValue value(QString *) const override
    {
        QJsonArray values;
        for (int i = 0; i < m_boxes.size(); ++i) {
            if (m_boxes[i]->isChecked())
                values.append(json(i));
        }
        return values;
    }

private:
    QList<QCheckBox *> m_boxes;
};

class ColorField : public SettingField
{
public:
    ColorField(Setting setting, const QVariant &descriptor, QWidget *parent)
        : SettingField(std::move(setting), descriptor, parent)
        , m_button(new QPushButton(this))
    {
        m_button->setObjectName(m_setting.key);
        setInput(m_button, m_button);
        connect(m_button, &QPushButton::clicked, this, [this] {
            const QColor color = QColorDialog::getColor(QColor(m_button->text()), this);
            if (color.isValid())
                setValue(color.name());
        });
        setValue(defaultValue());
    }

    void setValue(const QJsonValue &value) override
    {
        m_button->setText(value.toString(QStringLiteral("#ffffff")));
        QPixmap swatch(16, 16);
        swatch.fill(QColor(m_button->text()));
        m_button->setIcon(swatch);
        check();
    }

protected:
    QJsonValue value(QString *) const override
    {
        return m_button->text();
    }

private:
    QPushButton *m_button;
};

} // namespace

SettingField *makeSettingField(const Setting &setting, const QVariant &descriptor, QWidget *parent)
{
    if (setting.kind == Kind::Bool)
        return new FlagField(setting, descriptor, parent);
    if (setting.kind == Kind::Color)
        return new ColorField(setting, descriptor, parent);
    if (setting.choices.isEmpty())
        return new TextField(setting, descriptor, parent);
    switch (setting.kind) {
    case Kind::Integers:
    case Kind::Numbers:
    case Kind::Texts:
    case Kind::Flags:
        return new SeveralOfField(setting, descriptor, parent);
    default:
        return new OneOfField(setting, descriptor, parent);
    }
}

} // namespace qelworkbench
