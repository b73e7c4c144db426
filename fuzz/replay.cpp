// Feeds every file of the folders given to a fuzz target: its corpus as a regression test.
#include <QDirIterator>
#include <QFile>

#include <cstdint>
#include <cstdio>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* bytes, size_t size);

namespace {

/// Returns how many files were fed, or -1 where one cannot be read.
int replayFolder(const QString& folder)
{
    int files = 0;
    for (QDirIterator it(folder, QDir::Files); it.hasNext(); ++files) {
        QFile file(it.next());
        // Said before: the target aborts on what it finds.
        std::fprintf(stderr, "%s\n", qPrintable(file.fileName()));
        if (!file.open(QIODevice::ReadOnly))
            return -1;
        const QByteArray bytes = file.readAll();
        LLVMFuzzerTestOneInput(reinterpret_cast<const uint8_t*>(bytes.constData()),
                               size_t(bytes.size()));
    }
    return files;
}

} // namespace

int main(int argc, char** argv)
{
    for (int i = 1; i < argc; ++i) {
        if (replayFolder(QFile::decodeName(argv[i])) <= 0) {
            std::fprintf(stderr, "Nothing to read in %s\n", argv[i]);
            return 1;
        }
    }
    return argc > 1 ? 0 : 2;
}
