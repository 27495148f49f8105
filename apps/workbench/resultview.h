#ifndef QELWORKBENCH_RESULTVIEW_H
#define QELWORKBENCH_RESULTVIEW_H

#include "exports.h"
#include "platelayout.h"
#include "store.h"

#include <QtWidgets/QWidget>

class QCheckBox;
class QComboBox;
class QLabel;
class QMenu;
class QPushButton;
class QSlider;
class QStackedWidget;
class QTableWidget;
class QTabWidget;

namespace qelworkbench {

class Curves;
class PlateView;

/// A result to look at: the plate as a picture and as a table, a series as curves, the statistics
/// of the selected wells, and the ways out of the window.
class ResultView : public QWidget
{
    Q_OBJECT

public:
    explicit ResultView(QWidget *parent = nullptr);

    /// Shows a single run, or the runs of a series with the last of them in front.
    void setResults(const QVector<Result> &results);
    /// Shows nothing but `hint`.
    void clear(const QString &hint = QString());

    const QVector<Result> &results() const;
    PlateView *plateView() const;

    /// Exports what is shown to a file that the operator chooses.
    void exportAs(ExportFormat format);
    void copy();
    /// Says what the selected wells hold; an empty text takes it back.
    void setContent(const QString &content);
    /// Takes the layout of a file in the `plater` format.
    void loadLayout(const QString &path);

Q_SIGNALS:
    /// What the wells of the run `file` hold has been changed.
    void layoutChanged(const QString &file, const QJsonObject &layout);
    /// Something that the operator wanted was done, or why it was not.
    void said(const QString &sentence, bool isProblem);

protected:
    void changeEvent(QEvent *event) override;

private:
    QWidget *makeHeader();
    void makeExportMenu();
    void makeLayoutMenu();
    void askForStandard();
    void askForLayout();
    void setLayoutOfWells(const PlateLayout &layout);
    PlatePicture pictureOf(const Result &result);
    void retranslate();
    void showRun();
    void showSelection();
    void showCurrentWell();
    void fillTable();
    const Result *current() const;

    QVector<Result> m_results;
    PlateLayout m_layout;
    QLabel *m_title;
    QLabel *m_subtitle;
    QLabel *m_readLabel;
    QComboBox *m_read;
    QLabel *m_runLabel;
    QSlider *m_run;
    QCheckBox *m_blank;
    QPushButton *m_layoutButton;
    QMenu *m_layoutMenu;
    QPushButton *m_copy;
    QPushButton *m_export;
    QMenu *m_menu;
    QStackedWidget *m_pages;
    QLabel *m_plain; // what is no plate, or a hint
    QTabWidget *m_tabs;
    PlateView *m_plate;
    QTableWidget *m_table;
    Curves *m_curves;
    QLabel *m_well;
    QLabel *m_statistics;
    QLabel *m_legend;
};

} // namespace qelworkbench

#endif
