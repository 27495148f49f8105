#ifndef QELWORKBENCH_HISTORYPANE_H
#define QELWORKBENCH_HISTORYPANE_H

#include "history.h"

#include <QtWidgets/QWidget>

class QComboBox;
class QLabel;
class QLineEdit;
class QPushButton;
class QStackedWidget;
class QTableView;

namespace qelworkbench {

class ComparisonView;
class ResultView;

/// What was measured before: found by words and by day, named, noted, opened, exported, and two of
/// them compared.
class HistoryPane : public QWidget
{
    Q_OBJECT

public:
    explicit HistoryPane(History *history, QWidget *parent = nullptr);

    ResultView *resultView() const;
    /// Puts the keyboard where one searches.
    void focusSearch();

Q_SIGNALS:
    void said(const QString &sentence, bool isProblem);
    /// The operator wants to keep runs in another folder.
    void folderWanted();

protected:
    void changeEvent(QEvent *event) override;

private:
    void retranslate();
    void showDays();
    void open();
    void compare(int row, int otherRow);
    void showHint(const QString &hint);
    void showCount();

    History *m_history;
    HistoryFilter *m_filter;
    QLineEdit *m_search;
    QComboBox *m_days;
    QLabel *m_count;
    QPushButton *m_folder;
    QTableView *m_table;
    QStackedWidget *m_pages;
    ResultView *m_result;
    ComparisonView *m_comparison;
};

} // namespace qelworkbench

#endif
