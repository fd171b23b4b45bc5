#pragma once

#include <QByteArray>
#include <QString>

#include <list>
#include <optional>

/// Joins the datagrams of a message that the server split. Every piece of such a message ends in a marker;
/// the message is whole once it holds as many opening as closing braces. The pieces of one sender are joined
/// in the order they come and nothing else identifies them, so a lost piece leaves the rest waiting until
/// Clear(). Strangers do not spoil a message by pieces of their own.
class Fragments {
public:
    /// Ends each piece of a split message.
    static constexpr char Marker[] = "!#(";
    /// More than any message needs. When all that waits outgrows it, the longest is dropped.
    static constexpr int MaxSize = 4 * 1024 * 1024;
    /// How many senders' pieces wait at a time; one more takes the place of who was heard longest ago.
    static constexpr int MaxSenders = 8;

    /// Takes one datagram, whose text ends at its first NUL. Returns the message it completes: itself when it
    /// carries no marker (whatever waits goes on waiting), all pieces of its sender joined when it is the
    /// last of them, and nothing while more must follow.
    std::optional<QByteArray> Join(const QByteArray& datagram, const QString& sSender);

    /// Forgets the pieces that wait, of all senders or of one.
    void Clear();
    void Clear(const QString& sSender);

private:
    struct Pieces {
        QString sender;
        QByteArray text;
        /// Opening less closing braces, kept up as pieces come so that many cost no more than few.
        int nOpen = 0;
    };

    static void LogDrop(const Pieces& pieces, const char* pReason);
    QByteArray::size_type Size() const;
    Pieces& Of(const QString& sSender);
    QString DropLongest();

    std::list<Pieces> m_waiting;  ///< who was heard last comes first
};
