#include "device/linewriter.h"

#include <QVector>

#include <cerrno>
#include <poll.h>
#include <unistd.h>

namespace {

/// Some seconds of a busy evening.
constexpr std::size_t MostLines = 1000;
constexpr int LongestLine = 4000;

}  // namespace

QString Printable(const QString& sText) {
    QString sPrintable;
    for (const uint nChar : sText.toUcs4()) {
        const auto cChar = static_cast<char32_t>(nChar);
        const QChar::Category category = QChar::category(nChar);
        const bool bBreaks = category == QChar::Separator_Line || category == QChar::Separator_Paragraph;
        sPrintable += QChar::isPrint(nChar) && !bBreaks ? QString::fromUcs4(&cChar, 1)
                                                        : QString("\\u%1").arg(nChar, 4, 16, QChar('0'));
    }
    return sPrintable;
}

LineWriter::LineWriter(int nDescriptor) : m_nDescriptor(nDescriptor), m_worker(MostLines) {}

void LineWriter::Write(const QString& sLine) {
    QByteArray text = Printable(sLine.left(LongestLine)).toLocal8Bit() + '\n';
    if (m_nLost > 0) {
        text.prepend(QByteArray::number(m_nLost) + " lines lost\n");
    }
    const auto write = [text, nDescriptor = m_nDescriptor] {
        for (ssize_t nAt = 0, nWritten = 0; nAt < text.size(); nAt += nWritten) {
            nWritten =
                ::write(nDescriptor, text.constData() + nAt, static_cast<std::size_t>(text.size() - nAt));
            if (nWritten < 0 && errno == EAGAIN) {  // somebody else who writes there made it so
                pollfd room{nDescriptor, POLLOUT, 0};
                ::poll(&room, 1, -1);
                nWritten = 0;
            } else if (nWritten <= 0) {
                return;  // nobody reads any more
            }
        }
    };
    m_nLost = m_worker.Do(write) ? 0 : m_nLost + 1;
}
