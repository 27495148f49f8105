// Stands in for main.cpp of the example: measures a plate through its window, and cancels a run.
#include "window.h"

#include <qelfrontend/startup.h>

#include <QtCore/QTimer>
#include <QtTest/QTest>

class WindowTest : public QObject
{
    Q_OBJECT

private slots:
    void measures()
    {
        qel::frontend::startLibrary();
        Window window;
        window.show();
        const auto buttons = window.findChildren<QPushButton *>();
        auto *plate = window.findChild<QPlainTextEdit *>();
        auto *status = window.findChild<QLabel *>();
        QTRY_VERIFY(buttons.at(0)->isEnabled());
        buttons.at(0)->click();
        QTRY_VERIFY_WITH_TIMEOUT(plate->toPlainText().contains("450 nm"), 60000);
        QTRY_VERIFY(buttons.at(0)->isEnabled());
        QCOMPARE(status->text(), QString());

        buttons.at(0)->click();
        buttons.at(1)->click();
        QTRY_VERIFY(buttons.at(0)->isEnabled());
        QVERIFY(!status->text().isEmpty());
        QCOMPARE(plate->toPlainText(), QString());
    }
};

QTEST_MAIN(WindowTest)
#include "main.moc"
