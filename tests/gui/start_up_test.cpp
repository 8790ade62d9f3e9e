#include "app/windows/frm_start_up.h"

#include <QLabel>
#include <QPointer>
#include <QTest>

using namespace tonvex;

class Start_Up_Test : public QObject {
    Q_OBJECT
private slots:
    void Tells_The_Version_And_Closes_Itself();
    void Goes_At_A_Key();
};

void Start_Up_Test::Tells_The_Version_And_Closes_Itself() {
    Memory_Settings_Store look;
    const Theme theme(*qApp, look);
    const QPointer<frmStartUp> window = new frmStartUp(theme);
    window->show();
    QCOMPARE(window->findChild<QLabel*>(QStringLiteral("version"))->text(), QStringLiteral("Version: 2.4.4"));
    QElapsedTimer waited;
    waited.start();
    QTRY_VERIFY_WITH_TIMEOUT(window.isNull(), 5000);
    QVERIFY2(waited.elapsed() >= 2000, "not before its time");
}

void Start_Up_Test::Goes_At_A_Key() {
    Memory_Settings_Store look;
    const Theme theme(*qApp, look);
    const QPointer<frmStartUp> window = new frmStartUp(theme);
    window->show();
    QTest::keyClick(window, Qt::Key_Escape);
    QTRY_VERIFY_WITH_TIMEOUT(window.isNull(), 1000);
}

QTEST_MAIN(Start_Up_Test)
#include "start_up_test.moc"
