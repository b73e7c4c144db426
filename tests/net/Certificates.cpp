#include "tests/net/Certificates.h"

#include <QFile>
#include <QProcess>
#include <QResource>
#include <QUuid>

using namespace Qt::StringLiterals;

namespace {
QString newFile(const QString& folder, const QString& suffix)
{
    return folder + u'/' + QUuid::createUuid().toString(QUuid::Id128) + suffix;
}

void run(const QString& program, const QStringList& arguments)
{
    QProcess process;
    process.start(program, arguments);
    if (!process.waitForFinished() || process.exitCode() != 0)
        qFatal("%s: %s", qPrintable(program), process.readAllStandardError().constData());
}

QByteArray contents(const QString& path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

void write(const QString& path, const QByteArray& text)
{
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly) || file.write(text) != text.size())
        qFatal("%s cannot be written", qPrintable(path));
}
} // namespace

TestServer::Identity makeIdentity(const QString& folder, const QString& host, int days)
{
    TestServer::Identity identity{newFile(folder, u".pem"_s), newFile(folder, u".key"_s)};
    run(u"openssl"_s, {u"req"_s, u"-x509"_s, u"-nodes"_s, u"-newkey"_s, u"ec"_s, u"-pkeyopt"_s,
                       u"ec_paramgen_curve:P-256"_s, u"-subj"_s, u"/CN=test"_s, u"-addext"_s,
                       u"subjectAltName=DNS:"_s + host, u"-keyout"_s, identity.key, u"-out"_s,
                       identity.certificate});
    // Only here may the end lie in the past.
    const QString dated = newFile(folder, u".pem"_s);
    run(u"openssl"_s, {u"x509"_s, u"-in"_s, identity.certificate, u"-signkey"_s, identity.key,
                       u"-days"_s, QString::number(days), u"-out"_s, dated});
    identity.certificate = dated;
    return identity;
}

PinnedCertificate::PinnedCertificate(const QString& folder, const QStringList& pemFiles)
    : m_collection(newFile(folder, u".rcc"_s))
{
    QByteArray certificates;
    for (const QString& file : pemFiles)
        certificates += contents(file);
    const QString pem = newFile(folder, u".pem"_s);
    write(pem, certificates);
    const QString list = newFile(folder, u".qrc"_s);
    write(list, "<RCC><qresource prefix=\"/network\"><file alias=\"server.pem\">" + pem.toUtf8() +
                    "</file></qresource></RCC>");
    run(QStringLiteral(MVR_RCC), {u"--binary"_s, list, u"-o"_s, m_collection});
    if (!QResource::registerResource(m_collection))
        qFatal("%s cannot be registered", qPrintable(m_collection));
}

PinnedCertificate::~PinnedCertificate()
{
    QResource::unregisterResource(m_collection);
}
