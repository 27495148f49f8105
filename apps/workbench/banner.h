#ifndef QELWORKBENCH_BANNER_H
#define QELWORKBENCH_BANNER_H

#include <QtWidgets/QFrame>

class QLabel;
class QPushButton;

namespace qelworkbench {

class Instrument;

/// What an instrument needs the operator for: an action that it asks for, in yellow, or a problem,
/// in red, each with the buttons that answer it. Hidden while there is nothing.
class Banner : public QFrame
{
    Q_OBJECT

public:
    explicit Banner(QWidget *parent = nullptr);

    /// Shows how `instrument` stands; null for none.
    void showFor(const Instrument *instrument);

Q_SIGNALS:
    void confirmed();
    void refused();
    /// What could not be kept is to be written again, or what did not open to be opened again.
    void againWanted();
    void folderWanted();

protected:
    void changeEvent(QEvent *event) override;

private:
    QPushButton *addButton(const char *name, void (Banner::*signal)());
    void fitButtons();
    void retranslate();

    QLabel *m_text;
    QPushButton *m_confirm;
    QPushButton *m_refuse;
    QPushButton *m_again;
    QPushButton *m_folder;
};

} // namespace qelworkbench

#endif
