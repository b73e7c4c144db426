#include "tests/net/Certificates.h"

#include <QFile>
#include <QProcess>
#include <QResource>

using namespace Qt::StringLiterals;

namespace {
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

TestServer::Identity makeIdentity(const QString& name, int days)
{
    const QTemporaryDir dir;
    const QString key = dir.filePath(u"key"_s);
    const QString certificate = dir.filePath(u"certificate"_s);
    const QString dated = dir.filePath(u"dated"_s);
    run(u"openssl"_s, {u"req"_s, u"-x509"_s, u"-nodes"_s, u"-newkey"_s, u"ec"_s, u"-pkeyopt"_s,
                       u"ec_paramgen_curve:P-256"_s, u"-subj"_s, u"/CN=test"_s, u"-addext"_s,
                       u"subjectAltName="_s + name, u"-keyout"_s, key, u"-out"_s, certificate});
    // Only here may the end lie in the past.
    run(u"openssl"_s, {u"x509"_s, u"-in"_s, certificate, u"-signkey"_s, key, u"-days"_s,
                       QString::number(days), u"-out"_s, dated});
    return {contents(dated), contents(key)};
}

PinnedCertificate::PinnedCertificate(const QByteArray& pem)
{
    write(m_dir.filePath(u"server.pem"_s), pem);
    const QString list = m_dir.filePath(u"list.qrc"_s);
    write(list, "<RCC><qresource prefix=\"/network\"><file>server.pem</file></qresource></RCC>");
    const QString collection = m_dir.filePath(u"collection"_s);
    run(QStringLiteral(MVR_RCC), {u"--binary"_s, list, u"-o"_s, collection});
    if (!QResource::registerResource(collection))
        qFatal("%s cannot be registered", qPrintable(collection));
}

PinnedCertificate::~PinnedCertificate()
{
    QResource::unregisterResource(m_dir.filePath(u"collection"_s));
}
