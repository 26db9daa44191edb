// SPDX-License-Identifier: MIT
// For tools/compare-saves: replaces "old" by "new" in the named file, as a program does that uses
// Qt's class for safe writing.
#include <QFile>
#include <QSaveFile>

int main(int argc, char** argv)
{
    const QString path = QFile::decodeName(argc > 1 ? argv[1] : "");
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly)) {
        return 1;
    }
    QByteArray bytes = file.readAll();
    bytes.replace("old", "new");
    QSaveFile saved(path);
    return saved.open(QIODevice::WriteOnly) && saved.write(bytes) == bytes.size() && saved.commit()
               ? 0
               : 1;
}
