#include <QApplication>
#include <QPainter>
#include <QPixmap>
#include <QTimer>
#include <QUdpSocket>
#include <QWidget>

/// What the remote is measured against: the least that a Qt program of its kind can be. One window of the
/// remote's size that paints one picture, a bound socket and a 25 ms timer.
class Floor : public QWidget {
public:
    Floor() : m_picture(820, 600) {
        m_picture.fill(Qt::darkGray);
        setFixedSize(m_picture.size());
        m_socket.bind(QHostAddress::LocalHost);
        connect(&m_timer, &QTimer::timeout, this, [this] { ++m_nTicks; });
        m_timer.start(25);
    }

protected:
    void paintEvent(QPaintEvent*) override { QPainter(this).drawPixmap(0, 0, m_picture); }

private:
    QPixmap m_picture;
    QUdpSocket m_socket;
    QTimer m_timer;
    int m_nTicks = 0;
};

int main(int argc, char* argv[]) {
    QApplication application(argc, argv);
    Floor window;
    window.show();
    return QApplication::exec();
}
