#include <QApplication>
#include <QLabel>
#include <QProgressBar>
#include <QPushButton>
#include <QString>
#include <QVBoxLayout>
#include <QWidget>

/// The least that a program with a window of this toolkit does. With any argument the window is not empty but
/// holds the kinds of controls that the product's does.
int main(int argumentCount, char** arguments) {
    const QApplication application(argumentCount, arguments);
    QWidget window;
    window.setWindowTitle("Minimal");
    window.setFixedSize(520, 260);
    if (argumentCount > 1) {
        auto* const layout = new QVBoxLayout(&window);
        layout->addWidget(new QLabel(QString::fromUtf8("Préparation de l'installation...")));
        layout->addWidget(new QLabel(QString::fromUtf8("Aucune connexion réseau disponible")));
        layout->addWidget(new QProgressBar);
        layout->addWidget(new QPushButton(QString::fromUtf8("Annuler")));
    }
    window.show();
    return QApplication::exec();
}
