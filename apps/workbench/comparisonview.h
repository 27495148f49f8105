#ifndef QELWORKBENCH_COMPARISONVIEW_H
#define QELWORKBENCH_COMPARISONVIEW_H

#include "store.h"

#include <QtWidgets/QWidget>

class QComboBox;
class QLabel;
class QStackedWidget;
class QTabWidget;

namespace qelworkbench {

class PlateView;

/// Two results to compare: the plates side by side on one scale of colours, or what lies between
/// them. Values are shown as they were measured.
class ComparisonView : public QWidget
{
    Q_OBJECT

public:
    explicit ComparisonView(QWidget *parent = nullptr);

    /// Shows `one` as A and `other`, of which it is taken away, as B.
    void setResults(const Result &one, const Result &other);

protected:
    void changeEvent(QEvent *event) override;

private:
    QWidget *makePlate(PlateView *plate, QLabel *title);
    void keepTogether(PlateView *leader, PlateView *follower);
    void retranslate();
    void showRead();

    QVector<Result> m_results; // none or two
    QStackedWidget *m_pages;
    QLabel *m_problem; // why nothing can be compared
    QLabel *m_readLabel;
    QComboBox *m_read;
    QTabWidget *m_tabs;
    PlateView *m_one;
    QLabel *m_oneTitle;
    PlateView *m_other;
    QLabel *m_otherTitle;
    PlateView *m_difference;
    QLabel *m_differenceTitle;
};

} // namespace qelworkbench

#endif
