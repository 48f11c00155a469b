#include "tools/tqproj/DocumentFile.h"

#include "support/TQReplacementFile.h"
#include "support/TQWriteMemStream.h"
#include "tools/tqproj/InputFile.h"

#include <iostream>
#include <iterator>

DocumentFile::DocumentFile(const std::string& path) {
    InputFile file(path, *std::cin.rdbuf());
    if (file.error()) {
        _problem = "cannot read " + path + ": " + file.error().message();
        return;
    }
    _bytes.assign(std::istreambuf_iterator<char>(&file.source()), std::istreambuf_iterator<char>());
}

TQReadMemStream DocumentFile::stream() const {
    constexpr int version = 0;
    return TQReadMemStream(_bytes.data(), _bytes.size(), version, TQProjMgr::FromDocument);
}

bool DocumentFile::write(const TQProjMgr& manager, const std::string& path) {
    TQWriteMemStream stream;
    manager.archiveTo(&stream);
    TQReplacementFile file;
    return file.open(TQString(path.c_str())) &&
           file.write({stream.getMemory().data(), stream.getMemory().size()}) && file.commit();
}
