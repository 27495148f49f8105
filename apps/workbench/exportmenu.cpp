#include "exportmenu.h"

#include "text.h"

#include <QtCore/QFileInfo>
#include <QtCore/QSettings>
#include <QtCore/QStandardPaths>
#include <QtWidgets/QFileDialog>

namespace qelworkbench {

ExportMenu::ExportMenu(QWidget *parent)
    : QMenu(parent)
{
    // Anew each time, and so in the present language.
    connect(this, &QMenu::aboutToShow, this, &ExportMenu::fill);
}

void ExportMenu::setFileName(const QString &name)
{
    m_name = QString(name).replace(QLatin1Char('/'), QLatin1Char('-'));
}

void ExportMenu::fill()
{
    clear();
    const auto add = [this](ExportFormat format, const char *title) {
        connect(addAction(text(title)), &QAction::triggered, this, [this, format] { ask(format); });
    };
    add(ExportFormat::Spreadsheet, "qelworkbench-export-xlsx");
    add(ExportFormat::TidyCsv, "qelworkbench-export-tidy");
    add(ExportFormat::PlateCsv, "qelworkbench-export-plate");
    add(ExportFormat::Json, "qelworkbench-export-json");
    add(ExportFormat::Png, "qelworkbench-export-png");
    add(ExportFormat::Svg, "qelworkbench-export-svg");
}

void ExportMenu::ask(ExportFormat format)
{
    QSettings settings;
    const QString key = QStringLiteral("exportFolder");
    const QString folder =
        settings.value(key, QStandardPaths::writableLocation(QStandardPaths::DocumentsLocation))
            .toString();
    const QString suffix = suffixOf(format);
    QString path =
        QFileDialog::getSaveFileName(parentWidget(), text("qelworkbench-export"),
                                     folder + QLatin1Char('/') + m_name + QLatin1Char('.') + suffix,
                                     QStringLiteral("*.") + suffix);
    if (path.isEmpty())
        return;
    if (QFileInfo(path).suffix().isEmpty())
        path += QLatin1Char('.') + suffix;
    settings.setValue(key, QFileInfo(path).path());
    Q_EMIT wanted(format, path);
}

} // namespace qelworkbench
