#include "app/windows/frm_mouse_status.h"
#include "app/windows/frm_start_up.h"

#include <QCursor>
#include <QLabel>
#include <QPointer>
#include <QTest>

using namespace tonvex;

class Start_Up_Test : public QObject {
    Q_OBJECT
private slots:
    void Tells_The_Version_And_Closes_Itself();
    void Goes_At_A_Key();
    void The_Mouse_Status_Stays_Beside_The_Mouse();
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

void Start_Up_Test::The_Mouse_Status_Stays_Beside_The_Mouse() {
    const QRect screen(100, 0, 1000, 800); // the second of two side by side
    const QSize window(200, 50);
    QCOMPARE(frmMouseStatus::Place({300, 300}, window, screen, 16), QPoint(316, 316));
    QCOMPARE(frmMouseStatus::Place({1000, 300}, window, screen, 16), QPoint(784, 316));
    QCOMPARE(frmMouseStatus::Place({300, 780}, window, screen, 16), QPoint(316, 714));

    Memory_Settings_Store look;
    const Theme theme(*qApp, look);
    frmMouseStatus status(theme);
    status.show();
    const QPoint mouse = QCursor::pos();
    QTRY_VERIFY(status.text().startsWith(QStringLiteral("%1, %2").arg(mouse.x()).arg(mouse.y())));
    QVERIFY(!status.isActiveWindow());
}

QTEST_MAIN(Start_Up_Test)
#include "start_up_test.moc"
