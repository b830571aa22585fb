#include "Base/Configure/FileUploader.h"

#include "Base/MakeOnce.h"

namespace Orvane {

FileUploader* FileUploader::GetInstance() {
    static std::atomic<FileUploader*> instance{nullptr};
    return Quern::MakeOnce(instance, [] { return new FileUploader; });
}

void FileUploader::OnConfigureRefreshed(IStringIterator*) {}

void FileUploader::OnFinished(SorrelCUploadTask*, int) {}

}  // namespace Orvane
