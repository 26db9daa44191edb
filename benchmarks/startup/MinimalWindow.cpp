// SPDX-License-Identifier: MIT
// What any Qt Widgets program costs until it paints: an empty main window, and nothing else.
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
