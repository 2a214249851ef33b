// The yardstick for the editor's start-up time: the least a Qt Widgets
// program does before its first window shows.
#include <QApplication>
#include <QMainWindow>

int main(int argc, char** argv)
{
    QApplication application(argc, argv);
    QMainWindow window;
    window.setWindowTitle(QStringLiteral("Minimal Qt window"));
    window.resize(800, 600);
    window.show();
    return application.exec();
}
