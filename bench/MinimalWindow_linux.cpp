#include <QApplication>
#include <QWidget>

/// The least that a program with a window of this toolkit does.
int main(int argumentCount, char** arguments) {
    const QApplication application(argumentCount, arguments);
    QWidget window;
    window.setWindowTitle("Minimal");
    window.setFixedSize(520, 260);
    window.show();
    return QApplication::exec();
}
