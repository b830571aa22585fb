// The HTTP tasks' half of the binary contract, written down a second time (see Contract.h).
#ifndef ORVANE_TESTS_WWW_CONTRACT_H
#define ORVANE_TESTS_WWW_CONTRACT_H

namespace Contract {

struct Task {
    virtual ~Task() {}
    virtual void Header(const char* name, const char* value) = 0;
    virtual void Address(const char* address) = 0;
    virtual const char* Address() = 0;
    virtual void GiveUp() = 0;
};

struct DataRequest : virtual Task {
    struct Listener {  // no destructor in its table
        virtual void Ended(DataRequest* request, int error, int status, const char* bytes, long long length) = 0;
    };
    virtual void Fetch() = 0;
    virtual void Send(const char* bytes, int length) = 0;
    virtual void Listen(Listener* listener) = 0;
    virtual void Unlisten(Listener* listener) = 0;
};

struct Download : virtual Task {
    struct Listener {  // no destructor in its table
        virtual void Began(Download* download, long long total) = 0;
        virtual void Moved(Download* download, long long bytes, long long total) = 0;
        virtual void Ended(Download* download, int error, long long total) = 0;
    };
    virtual void Halt() = 0;
    virtual void Go() = 0;
    virtual void Listen(Listener* listener) = 0;
    virtual void Unlisten(Listener* listener) = 0;
    virtual const char* Path() = 0;
};

struct Upload {
    struct Listener {  // no destructor in its table
        virtual void Ended(Upload* upload, int result) = 0;
    };
    virtual ~Upload() {}
    virtual void Begin(const char* id, const char* path, long long partSize, const char* address) = 0;
    virtual const char* Id() = 0;
    virtual const char* Path() = 0;
    virtual void Credentials(const char* text) = 0;
    virtual void Listen(Listener* listener) = 0;
};

struct Response {
    virtual ~Response() {}
    virtual const char* Header(const char* name) = 0;
    virtual const char* Address() = 0;
    virtual const char* Protocol() = 0;
    virtual int Status() = 0;
    virtual const char* Reason() = 0;
    virtual const char* Bytes() = 0;
    virtual long long Length() = 0;
};

struct ResponseParts {
    const char* address;
    const char* protocol;
    int status;
    const char* reason;
    const char* const* headers;
    const void* bytes;
    long long length;
};

}  // namespace Contract

#endif
