#pragma once

#include <QByteArray>
#include <QHostAddress>
#include <QString>

#include <optional>
#include <utility>

/// A socket that sends by one interface of the machine, or not at all; or, where none was asked for, as the
/// system routes.
class SacnSocket {
public:
    /// An interface by its name or one of its addresses; empty for the system's choice. It need not be there.
    explicit SacnSocket(const QString& sInterface) : m_sInterface(sInterface) {}
    ~SacnSocket() { Close(); }
    SacnSocket(const SacnSocket&) = delete;
    SacnSocket& operator=(const SacnSocket&) = delete;

    /// Opens it, unless it is open by the interface as that is now. False if it cannot be; see ErrorText().
    bool Open(qint64 nNowMs);
    bool Send(const QByteArray& packet, const QHostAddress& to);
    /// What went wrong last.
    const QString& ErrorText() const { return m_sError; }
    void Close();

private:
    /// Its index, and which address of it is sent from; of the system's choice neither.
    using Interface = std::pair<int, quint32>;

    std::optional<Interface> Look();
    bool OpenBy(const Interface& interface);

    QString m_sInterface;
    QString m_sError;
    std::optional<Interface> m_interface;  ///< by which it is open
    qint64 m_nLookedMs = 0;
    int m_nSocket = -1;
};
