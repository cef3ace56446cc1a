#pragma once

#include "kd/array.h"
#include "kd/status.h"

#include <cstdint>

class KdRxObject;

/// The description of a class at run time: its name and its base.
class KdRxClass {
public:
    KdRxClass(const wchar_t* name, KdRxClass* parent);
    KdRxClass(const KdRxClass&) = delete;
    KdRxClass& operator=(const KdRxClass&) = delete;

    const wchar_t* name() const { return name_; }

    /// The base class; null for the root.
    KdRxClass* myParent() const { return parent_; }

    /// True when this class is `other` or derived from it; false for null.
    bool isDerivedFrom(const KdRxClass* other) const;

private:
    const wchar_t* name_;
    KdRxClass* parent_;
};

/// Root of every class that knows its class at run time.
class KdRxObject {
public:
    KdRxObject() = default;
    virtual ~KdRxObject() = default;

    static KdRxClass* desc();

    virtual KdRxClass* isA() const { return desc(); }

    bool isKindOf(const KdRxClass* other) const { return isA()->isDerivedFrom(other); }

    /// Takes the contents of another object.
    /// @return eOk; eNotThatKindOfClass for a source of another class
    virtual Kdapi::ErrorStatus copyFrom(const KdRxObject* source);

    /// A free-standing copy owned by the caller; null when the class cannot be copied.
    virtual KdRxObject* clone() const { return nullptr; }

protected:
    KdRxObject(const KdRxObject&) = default;
    KdRxObject& operator=(const KdRxObject&) = default;
};

/// Declares a class's description inside the class.
#define KDRX_DECLARE_MEMBERS(Class)                                                                \
public:                                                                                            \
    static KdRxClass* desc();                                                                      \
    KdRxClass* isA() const override                                                                \
    {                                                                                              \
        return desc();                                                                             \
    }                                                                                              \
    static Class* cast(KdRxObject* object)                                                         \
    {                                                                                              \
        return object && object->isKindOf(desc()) ? static_cast<Class*>(object) : nullptr;         \
    }                                                                                              \
    static const Class* cast(const KdRxObject* object)                                             \
    {                                                                                              \
        return object && object->isKindOf(desc()) ? static_cast<const Class*>(object) : nullptr;   \
    }

/// Defines what KDRX_DECLARE_MEMBERS declared.
#define KDRX_DEFINE_MEMBERS(Class, Base)                                                           \
    KdRxClass* Class::desc()                                                                       \
    {                                                                                              \
        static KdRxClass description(L## #Class, Base::desc());                                    \
        return &description;                                                                       \
    }

/// Named services of the host.
class KdRxRegistry {
public:
    virtual ~KdRxRegistry() = default;

    /// The service registered under a key; null when there is none.
    virtual KdRxObject* at(const wchar_t* key) const = 0;
};

/// The host's registry of services: "DynamicLinker", "KDAPI_REGISTERED_COMMANDS".
KdRxRegistry* kdrxSysRegistry();

/// Loads, locks and unloads extension modules.
class KdRxDynamicLinker : public KdRxObject {
    KDRX_DECLARE_MEMBERS(KdRxDynamicLinker)
public:
    /// Allows the module that a message packet belongs to, to be unloaded. @return true when known
    virtual bool unlockApplication(void* packet) = 0;

    /// Tells that the module of the packet works with several documents. @return true when known
    virtual bool registerAppMDIAware(void* packet) = 0;
};

/// Rebuilds the links of the class tree after classes were added.
void kdrxBuildClassHierarchy();

/// Takes a class description out of the class tree and deletes it.
void deleteKdRxClass(KdRxClass* description);

/// Loads an extension module by path or by a name beside the program.
/// @param printit  print the outcome on the command line
/// @param asCommand  the load came from a command
/// @return true when the module is loaded now. The host can throw while it loads.
bool kdrxLoadModule(const wchar_t* name, bool printit, bool asCommand);

/// Unloads an extension module that is unlocked. @return true when it is gone
bool kdrxUnloadModule(const wchar_t* name, bool asCommand);

/// File names of the loaded extension modules, in the order of loading.
///
/// The caller owns the array (`delete`) and every name in it (`delete[]`); null when it cannot be
/// had. The host can throw here.
KdArray<wchar_t*>* kdrxLoadedApps();

/// Stops the host with a formatted message.
///
/// Under a control that records fatal stops it returns, so what follows it must tidy up.
void kdrx_abort(const wchar_t* format, ...);

/// Message codes of kdrxEntryPoint and what it answers.
namespace KdRx {
enum AppMsgCode : std::uint32_t {
    kNullMsg = 0,
    kInitAppMsg = 1,
    kUnloadAppMsg = 2,
    kLoadDwgMsg = 3,
    kUnloadDwgMsg = 4,
    kInvkSubrMsg = 5
};

enum AppRetCode : int { kRetOK = 0, kRetError = 3 };
} // namespace KdRx
