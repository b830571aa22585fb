// The binary contract, written down a second time: nothing here comes from the product's headers. What the two sides
// share is the order of the virtual operations, the exact types of their arguments, and the layout of the registry.
#ifndef ORVANE_TESTS_BINARY_CONTRACT_H
#define ORVANE_TESTS_BINARY_CONTRACT_H

#include <map>
#include <string>
#include <vector>

namespace Contract {

struct ServiceRoot {
    virtual ~ServiceRoot() {}
    virtual const char* Name() const = 0;
    virtual const char* PluginName() const = 0;
};

struct Registrar {  // no destructor in its table
    virtual bool Declare(const char* service) = 0;
};

struct Module {
    virtual ~Module() {}
    virtual const char* Name() const = 0;
    virtual const char* Version() const = 0;
    virtual void First(Registrar* registrar) = 0;
    virtual void Second() = 0;
    virtual void Third() = 0;
    virtual void Fourth() = 0;
    virtual ServiceRoot* Service(const char* name) = 0;
};

struct Entry {
    Module* module;
    std::string name;
    std::string version;
    std::vector<std::string> services;
};

struct Host {  // no destructor in its table
    virtual bool Enter(Module* module) = 0;
    virtual bool Remove(Module* module) = 0;
    virtual bool RemoveNamed(const char* name) = 0;
    virtual const char* const* Names() = 0;
    virtual Module* Find(const char* name) = 0;
    virtual std::map<std::string, Entry>* Registry() = 0;
    virtual void WalkFirst() = 0;
    virtual void WalkSecond() = 0;
    virtual void WalkThird() = 0;
    virtual void WalkFourth() = 0;
};

// A module that keeps the host it found. Other services take a pointer to this.
struct ModuleBase : Module {
    Host* host = nullptr;
};

// One that does nothing at any stage.
struct IdleModule : ModuleBase {
    void First(Registrar*) override {}
    void Second() override {}
    void Third() override {}
    void Fourth() override {}
    ServiceRoot* Service(const char*) override { return nullptr; }
};

struct Event {
    virtual ~Event() {}
    virtual void PutNamed(const char* key, const char* value, int length) = 0;
    virtual void PutText(int key, const char* value, int length) = 0;
    virtual void PutNumber(int key, int value) = 0;
    virtual void Send() = 0;
};

struct DataService : ServiceRoot {
    virtual Event* Make(int source, const char* name) = 0;
    virtual void Unmake(Event** event) = 0;
    virtual unsigned int Device(const char* key, char** buffer, unsigned int size) = 0;
};

struct CoreReport : ServiceRoot {
    virtual Event* Make(int dataType, int source, const char* name) = 0;
    virtual void Unmake(Event** event) = 0;
};

struct Log {  // no destructor in its table
    virtual int IsCompatible() = 0;
    virtual void Option(const char* key, int value) = 0;
    virtual void Option(const char* key, const char* value) = 0;
    virtual void Callback(void (*sink)(int level, const char* line)) = 0;
    virtual void Threshold(int level) = 0;
    virtual void Open() = 0;
    virtual void Line(int level, const char* file, unsigned int line, const char* function, const char* tag,
                      const char* text) = 0;
    virtual void StageLine(int level, const char* file, unsigned int line, const char* function, const char* module,
                           const char* session, int stage, int status, int code, int code2, const char* message,
                           const char* userInfo, const char* reserved, const char* text) = 0;
    virtual int Threshold() = 0;
    virtual void Prune(int hours, int count) = 0;
    virtual void Reserved(int operation) = 0;
};

struct LogService : ServiceRoot {
    virtual int Version() = 0;
    virtual Log* Get(ModuleBase* module) = 0;
};

struct Keys {  // no destructor in its table
    virtual const char* Next() = 0;
    virtual bool AtEnd() = 0;
};

struct Settings;

struct SettingsListener {  // no destructor in its table
    virtual void Refreshed(Settings* settings, Keys* keys) = 0;
};

// Those that a test has no use for do nothing where it stands in for the product.
struct Settings {
    virtual ~Settings() {}
    virtual int Int(const char* key, int otherwise) = 0;
    virtual long long Long(const char* key, long long otherwise) = 0;
    virtual double Double(const char* key, double otherwise) = 0;
    virtual bool Bool(const char* key, bool otherwise) = 0;
    virtual bool Text(const char*, char*, int&, const char*) { return false; }
    virtual void Listen(SettingsListener*) {}
    virtual void Unlisten(SettingsListener*) {}
    virtual void User(int, const char*) {}
    virtual void Ask() {}
    virtual void Option(const char*, int) {}
    virtual void Option(const char*, const char*) {}
};

struct SettingsService : ServiceRoot {
    virtual Settings* Of(ModuleBase* module) = 0;
};

struct VersionedSettingsService : ServiceRoot {
    virtual int Version() = 0;
    virtual Settings* Of(ModuleBase* module) = 0;
};

struct File {
    virtual ~File() {}
    virtual bool Keep(const char* section, const char* key, int value) = 0;
    virtual bool Keep(const char* section, const char* key, long long value) = 0;
    virtual bool Keep(const char* section, const char* key, const char* value) = 0;
    virtual bool Keep(const char* section, const char* key, bool value) = 0;
    virtual bool Drop(const char* section, const char* key) = 0;
    virtual bool DropSection(const char* section) = 0;
    virtual bool DropAll() = 0;
    virtual bool Write() = 0;
    virtual bool WriteValue(const char* section, const char* key, int value) = 0;
    virtual bool WriteValue(const char* section, const char* key, long long value) = 0;
    virtual bool WriteValue(const char* section, const char* key, const char* value) = 0;
    virtual bool WriteValue(const char* section, const char* key, bool value) = 0;
    virtual bool DropAndWrite(const char* section, const char* key) = 0;
    virtual bool DropSectionAndWrite(const char* section) = 0;
    virtual bool DropAllAndWrite() = 0;
    virtual long long Long(const char* section, const char* key, long long otherwise) = 0;
    virtual int Int(const char* section, const char* key, int otherwise) = 0;
    virtual bool Text(const char* section, const char* key, char* buffer, int& size, const char* otherwise) = 0;
    virtual bool Bool(const char* section, const char* key, bool otherwise) = 0;
    virtual bool Has(const char* section, const char* key) = 0;
};

struct FileService : ServiceRoot {
    virtual File* Make(const char* name) = 0;
    virtual void Unmake(File** file) = 0;
    virtual File* Standard() = 0;
};

struct Account {
    char* openId;     // 128 bytes
    char* others[3];  // 1024, 64 and 16 bytes
    int channel;
    long word;
};

struct AccountService : ServiceRoot {
    virtual bool Fill(Account* account) = 0;
};

// What orvanecore_getInstance hands out.
struct Facade {
    virtual ~Facade() {}
    virtual int Start() = 0;
    virtual void Threshold(int level) = 0;
    virtual const char* Version() = 0;
    virtual void Server(const char* url) = 0;
    virtual void ForgetAnswer() = 0;
};

struct Stages {
    virtual ~Stages() {}
    virtual void Create() = 0;
    virtual void Start() = 0;
    virtual void Pause() = 0;
    virtual void Resume() = 0;
    virtual void Stop() = 0;
    virtual void Destroy() = 0;
};

}  // namespace Contract

// Native halves are told from other objects by a dynamic cast, so these names are part of the contract as well.
namespace Quern {

struct IPlatformObject {
    virtual ~IPlatformObject() {}
    unsigned long long id = 0;
    char* name = nullptr;
};

struct CPlatformObject : IPlatformObject {};

}  // namespace Quern

namespace Contract {

struct HalfMaker {  // no destructor in its table
    virtual Quern::IPlatformObject* Make() = 0;
};

struct Halves {
    virtual ~Halves() {}
    virtual Quern::CPlatformObject* Get(unsigned long long id) = 0;
    virtual void Put(unsigned long long id, Quern::CPlatformObject* half) = 0;
    virtual void Remove(unsigned long long id) = 0;
    virtual void RemoveEach() = 0;
};

struct Bridge {  // no destructor in its table
    virtual void EnterMaker(const char* name, HalfMaker* maker) = 0;
    virtual void EnterObject(const char* name, Quern::IPlatformObject* object) = 0;
    virtual Halves* Plain() = 0;
    virtual Halves* Requests() = 0;
    virtual Halves* Responses() = 0;
};

}  // namespace Contract

#endif
