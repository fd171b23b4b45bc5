#pragma once

#include <QByteArray>

#include <optional>

/// Joins the datagrams of a message that the server split. Every piece of such a message ends in a marker;
/// the message is whole once it holds as many opening as closing braces. Pieces are joined in the order they
/// come and nothing else identifies them, so a lost piece leaves the rest waiting until Clear().
class Fragments {
public:
    /// Ends each piece of a split message.
    static constexpr char Marker[] = "!#(";
    /// More than any message needs; a buffer that outgrows it is dropped.
    static constexpr int MaxSize = 4 * 1024 * 1024;

    /// Takes one datagram, whose text ends at its first NUL. Returns the message it completes: itself when it
    /// carries no marker (whatever waits goes on waiting), all pieces joined when it is the last of them, and
    /// nothing while more must follow.
    std::optional<QByteArray> Join(const QByteArray& datagram);

    /// Forgets the pieces that wait.
    void Clear();

private:
    QByteArray m_buffer;
    /// Opening less closing braces in the buffer, kept up as pieces come so that many cost no more than few.
    int m_nOpen = 0;
};
