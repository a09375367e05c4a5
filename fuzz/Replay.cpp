// Stands in for the fuzzer where there is none: gives the target each file of the folders named, once.
#include <QDir>
#include <QFile>
#include <QString>

#include <cstdint>
#include <cstdio>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size);

int main(int argc, char **argv)
{
    int count = 0;
    for (int i = 1; i < argc; ++i) {
        const QDir folder(QString::fromLocal8Bit(argv[i]));
        for (const QString &name : folder.entryList(QDir::Files, QDir::Name)) {
            QFile file(folder.filePath(name));
            if (!file.open(QIODevice::ReadOnly)) {
                std::fprintf(stderr, "cannot read %s\n", qPrintable(file.fileName()));
                return 1;
            }
            std::printf("%s\n", qPrintable(name));
            std::fflush(stdout);
            const QByteArray input = file.readAll();
            LLVMFuzzerTestOneInput(reinterpret_cast<const std::uint8_t *>(input.constData()),
                                   static_cast<std::size_t>(input.size()));
            ++count;
        }
    }
    if (count == 0)
        std::fprintf(stderr, "no inputs\n");
    return count == 0 ? 1 : 0;
}
