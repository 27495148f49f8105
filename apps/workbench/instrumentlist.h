#ifndef QELWORKBENCH_INSTRUMENTLIST_H
#define QELWORKBENCH_INSTRUMENTLIST_H

#include <QtWidgets/QListView>

namespace qelworkbench {

class Instrument;
class Instruments;

/// The instruments at a glance: name, serial, and what each is doing, with a coloured mark that has
/// a shape of its own for each state.
class InstrumentList : public QListView
{
    Q_OBJECT

public:
    explicit InstrumentList(Instruments *instruments, QWidget *parent = nullptr);

    /// The instrument that is selected; null when none is.
    Instrument *current() const;

Q_SIGNALS:
    void currentInstrumentChanged();

protected:
    void currentChanged(const QModelIndex &now, const QModelIndex &before) override;
    void paintEvent(QPaintEvent *event) override;
    void changeEvent(QEvent *event) override;

private:
    void retranslate();
    void choose(int row);

    Instruments *m_instruments;
};

} // namespace qelworkbench

#endif
