// What the program's XML readers share: reporting failures and taking an element's text.
#pragma once

#include <QString>
#include <QVarLengthArray>
#include <QXmlStreamReader>

/// A stream reader that logs why it gave up.
class BasicXmlReader : public QXmlStreamReader
{
protected:
    /// A text that is only parsed: kept without allocating while it is short.
    using ShortText = QVarLengthArray<QChar, 64>;

    /// Logs "Xml reader failed: " and `message`, and ends parsing.
    void _fail(const QString& message);

    /// Whether the document was read without errors; logs where a malformed one went wrong.
    [[nodiscard]] bool _finish() const;

    /// Reads on from an element's start to its end and gives the text between, whole, also where
    /// comments or CDATA sections split it. An element inside fails the read.
    /// Returns whether the reader is free of errors.
    bool _readNextText(QString& text);
    bool _readNextText(ShortText& text);

    int m_errorCode = 0;

private:
    template <typename Append>
    bool _readChunks(Append append);
};
