#include "layoutmenu.h"

#include "text.h"

#include <QtCore/QDir>
#include <QtCore/QSettings>
#include <QtWidgets/QFileDialog>
#include <QtWidgets/QInputDialog>

namespace qelworkbench {

static const QString lastLayout = QStringLiteral("lastLayout");

LayoutMenu::LayoutMenu(QWidget *parent)
    : QMenu(parent)
{
    // Anew each time, and so in the present language.
    connect(this, &QMenu::aboutToShow, this, &LayoutMenu::fill);
}

void LayoutMenu::setPlate(int rows, int columns)
{
    m_rows = rows;
    m_columns = columns;
}

void LayoutMenu::fill()
{
    clear();
    for (const char *content : {"sample", "blank", "control"}) {
        const QString name = QString::fromLatin1(content);
        connect(addAction(contentTitle(name)), &QAction::triggered, this,
                [this, name] { Q_EMIT contentChosen(name); });
    }
    connect(addAction(text("qelworkbench-layout-standard")), &QAction::triggered, this,
            &LayoutMenu::askForStandard);
    connect(addAction(text("qelworkbench-layout-nothing")), &QAction::triggered, this,
            [this] { Q_EMIT contentChosen(QString()); });
    addSeparator();
    connect(addAction(text("qelworkbench-layout-last")), &QAction::triggered, this, [this] {
        const auto last = QSettings().value(lastLayout).toJsonObject();
        Q_EMIT layoutChosen(PlateLayout::fromJson(last, m_rows, m_columns));
    });
    connect(addAction(text("qelworkbench-layout-csv")), &QAction::triggered, this,
            &LayoutMenu::askForFile);
}

void LayoutMenu::askForStandard()
{
    bool isGiven = false;
    const double concentration =
        QInputDialog::getDouble(parentWidget(), text("qelworkbench-layout-standard"),
                                text("qelworkbench-layout-concentration"), 1, 0, 1e12, 4, &isGiven);
    if (isGiven)
        Q_EMIT contentChosen(QStringLiteral("standard ") + QString::number(concentration, 'g', 12));
}

void LayoutMenu::askForFile()
{
    const QString path = QFileDialog::getOpenFileName(
        parentWidget(), text("qelworkbench-layout-csv"), QString(), QStringLiteral("*.csv"));
    if (!path.isEmpty())
        load(path);
}

void LayoutMenu::load(const QString &path)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly)) {
        Q_EMIT failed(
            text("qelworkbench-cannot-read", QDir::toNativeSeparators(path), file.errorString()));
        return;
    }
    QString problem;
    const auto layout = PlateLayout::fromCsv(file.readAll(), m_rows, m_columns, &problem);
    if (layout)
        Q_EMIT layoutChosen(*layout);
    else
        Q_EMIT failed(problem);
}

void LayoutMenu::remember(const PlateLayout &layout)
{
    QSettings().setValue(lastLayout, layout.toJson());
}

} // namespace qelworkbench
