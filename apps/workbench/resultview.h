#ifndef QELWORKBENCH_RESULTVIEW_H
#define QELWORKBENCH_RESULTVIEW_H

#include "exports.h"
#include "platelayout.h"
#include "store.h"

#include <QtWidgets/QWidget>

#include <optional>

class QCheckBox;
class QComboBox;
class QLabel;
class QPushButton;
class QSlider;
class QStackedWidget;
class QTableWidget;
class QTabWidget;

namespace qelworkbench {

class Curves;
class ExportMenu;
class LayoutMenu;
class PlateView;
class WellFacts;

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

    /// Exports what is shown.
    void exportAs(ExportFormat format, const QString &path);
    void copy();
    /// Says what the selected wells hold; an empty text takes it back. When none is selected, the
    /// wells that are dragged over from now on hold it, until stopPainting().
    void setContent(const QString &content);
    void stopPainting();

Q_SIGNALS:
    /// What the wells of the run `file` hold has been changed.
    void layoutChanged(const QString &file, const QJsonObject &layout);
    /// Something that the operator wanted was done, or why it was not.
    void said(const QString &sentence, bool isProblem);

protected:
    void changeEvent(QEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;

private:
    QWidget *makeHeader();
    void connectAll();
    void paintContent();
    void showBrush();
    void setLayoutOfWells(const PlateLayout &layout);
    PlatePicture shownPicture(const Result &result);
    void retranslate();
    void showRun();
    void showCurves();
    void fillTable();
    const Result *current() const;

    QVector<Result> m_results;
    PlateLayout m_layout;
    std::optional<QString> m_brush; // what the wells hold that are dragged over
    QLabel *m_title;
    QLabel *m_subtitle;
    QLabel *m_readLabel;
    QComboBox *m_read;
    QLabel *m_runLabel;
    QSlider *m_run;
    QCheckBox *m_blank;
    QPushButton *m_brushButton;
    QPushButton *m_layoutButton;
    LayoutMenu *m_layoutMenu;
    QPushButton *m_copy;
    QPushButton *m_export;
    ExportMenu *m_exportMenu;
    QStackedWidget *m_pages;
    QLabel *m_plain; // what is no plate, or a hint
    QTabWidget *m_tabs;
    PlateView *m_plate;
    QTableWidget *m_table;
    Curves *m_curves;
    WellFacts *m_facts;
};

} // namespace qelworkbench

#endif
