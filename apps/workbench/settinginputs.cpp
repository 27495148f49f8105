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

namespace {

// A number as people write it, without the quotation marks and brackets of JSON.
QString plainText(const QJsonValue &value)
{
    if (value.isArray()) {
        QStringList parts;
        for (const QJsonValue part : value.toArray())
            parts.append(plainText(part));
        return parts.join(QStringLiteral(", "));
    }
    return value.isDouble() ? QLocale::c().toString(value.toDouble(), 'g', 15) : value.toString();
}

// Numbers, lists without choices, texts, files, wells: what has no better input.
class TextField : public SettingField
{
public:
    TextField(const QString &key, const QVariant &descriptor, QWidget *parent)
        : SettingField(key, descriptor, parent)
        , m_type(entry().value(QStringLiteral("type")).toString())
    {
        auto *input = new QWidget(this);
        auto *layout = new QHBoxLayout(input);
        layout->setContentsMargins({});
        m_edit = new QLineEdit(input);
        m_edit->setObjectName(key);
        layout->addWidget(m_edit);
        const QString unit = m_type == QLatin1String("std::chrono::milliseconds")
            ? QStringLiteral("ms")
            : entry().value(QStringLiteral("unit")).toString();
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
        if (entered.isEmpty() && m_type != QLatin1String("QString"))
            return QJsonValue::Undefined;
        if (isWells())
            return entered;
        if (isFile())
            return QLatin1Char('@') + entered;
        // A comma in a single number can only be a decimal one.
        if (m_type == QLatin1String("double") || m_type == QLatin1String("float"))
            entered.replace(QLatin1Char(','), QLatin1Char('.'));
        entered.replace(QStringLiteral(", "), QStringLiteral(","));
        QJsonObject configuration;
        if (!assignSetting(&configuration, m_key + QLatin1Char('=') + entered, m_descriptor,
                           problem))
            return QJsonValue::Undefined;
        return configuration.value(m_key);
    }

private:
    bool isFile() const
    {
        return m_type == QLatin1String("QByteArray");
    }

    bool isWells() const
    {
        return m_type == QLatin1String("QVector<bool>");
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
        dialog.setWindowTitle(settingTitle(m_key));
        auto *view = new PlateView(&dialog);
        view->setAccessibleName(settingTitle(m_key));
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

    const QString m_type;
    QLineEdit *m_edit;
    QPushButton *m_pick = nullptr;
};

class FlagField : public SettingField
{
public:
    FlagField(const QString &key, const QVariant &descriptor, QWidget *parent)
        : SettingField(key, descriptor, parent)
        , m_box(new QCheckBox(this))
    {
        m_box->setObjectName(key);
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
        m_box->setText(settingTitle(m_key));
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
    ChoiceField(const QString &key, const QVariant &descriptor, QWidget *parent)
        : SettingField(key, descriptor, parent)
        , m_choices(entry().value(QStringLiteral("choices")).toList())
        , m_names(entry().value(QStringLiteral("names")).toStringList())
    { }

    QString title(int choice) const
    {
        const QString unit = entry().value(QStringLiteral("unit")).toString();
        return choice < m_names.size()
            ? m_names[choice]
            : QStringLiteral("%1 %2").arg(m_choices[choice].toString(), unit).trimmed();
    }

    // The form in which readConfiguration() takes it.
    QJsonValue json(int choice) const
    {
        return choice < m_names.size() ? QJsonValue(m_names[choice])
                                       : QJsonValue::fromVariant(m_choices[choice]);
    }

    bool stands(int choice, const QJsonValue &value) const
    {
        return value == json(choice) || value == QJsonValue::fromVariant(m_choices[choice]);
    }

    const QVariantList m_choices;
    const QStringList m_names;
};

class OneOfField : public ChoiceField
{
public:
    OneOfField(const QString &key, const QVariant &descriptor, QWidget *parent)
        : ChoiceField(key, descriptor, parent)
        , m_box(new QComboBox(this))
    {
        for (int i = 0; i < m_choices.size(); ++i)
            m_box->addItem(title(i));
        m_box->setObjectName(key);
        setInput(m_box, m_box);
        connect(m_box, QOverload<int>::of(&QComboBox::currentIndexChanged), this,
                [this] { check(); });
        setValue(defaultValue());
    }

    void setValue(const QJsonValue &value) override
    {
        for (int i = 0; i < m_choices.size(); ++i) {
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
    SeveralOfField(const QString &key, const QVariant &descriptor, QWidget *parent)
        : ChoiceField(key, descriptor, parent)
    {
        auto *input = new QWidget(this);
        auto *layout = new QGridLayout(input);
        layout->setContentsMargins({});
        for (int i = 0; i < m_choices.size(); ++i) {
            auto *box = new QCheckBox(title(i), input);
            box->setObjectName(key + m_choices[i].toString());
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
            for (const QJsonValue one : values)
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
    ColorField(const QString &key, const QVariant &descriptor, QWidget *parent)
        : SettingField(key, descriptor, parent)
        , m_button(new QPushButton(this))
    {
        m_button->setObjectName(key);
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

SettingField *makeSettingField(const QString &key, const QVariant &descriptor, QWidget *parent)
{
    const QVariantHash entry =
        descriptor.toHash().value(QStringLiteral("settings")).toHash().value(key).toHash();
    const QString type = entry.value(QStringLiteral("type")).toString();
    const bool takesSeveral = type.startsWith(QLatin1String("QList<"))
        || type == QLatin1String("QVector<double>") || type == QLatin1String("QStringList")
        || type == QLatin1String("qel::devices::LedBarEffect_config::Modes");
    if (type == QLatin1String("bool"))
        return new FlagField(key, descriptor, parent);
    if (type == QLatin1String("qel::devices::LedBarEffect_config::Color"))
        return new ColorField(key, descriptor, parent);
    if (entry.value(QStringLiteral("choices")).toList().isEmpty())
        return new TextField(key, descriptor, parent);
    if (takesSeveral)
        return new SeveralOfField(key, descriptor, parent);
    return new OneOfField(key, descriptor, parent);
}

} // namespace qelworkbench
