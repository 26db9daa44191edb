// SPDX-License-Identifier: MIT
// An empty main window: the start-up time of any Qt Widgets program.
#include <QApplication>
#include <QMainWindow>

int main(int argc, char* argv[])
{
    const QApplication application(argc, argv);
    QMainWindow window;
    window.resize(600, 400);
    window.show();
    return QApplication::exec();
}
