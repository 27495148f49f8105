#ifndef QELWORKBENCH_EXPORTMENU_H
#define QELWORKBENCH_EXPORTMENU_H

#include "exports.h"

#include <QtWidgets/QMenu>

namespace qelworkbench {

/// The forms in which a result leaves the workbench. Asks for the file.
class ExportMenu : public QMenu
{
    Q_OBJECT

public:
    explicit ExportMenu(QWidget *parent = nullptr);

    /// What the file is called, without a suffix, unless the operator says otherwise.
    void setFileName(const QString &name);

Q_SIGNALS:
    void wanted(qelworkbench::ExportFormat format, const QString &path);

private:
    void fill();
    void ask(ExportFormat format);

    QString m_name;
};

} // namespace qelworkbench

#endif
