#include "frame/application.h"

#include "frame/registration.h"
#include "support/resource_handle.h"

namespace {

// Each table is a section of its own: a marker, the entries, a marker. This module has no entries.

[[gnu::section("DBXCUSTO"), gnu::used]] frame::ClassEntry* const classTable[] = {nullptr, nullptr};
[[gnu::section("KRXCOMMA"), gnu::used]] frame::CommandEntry* const commandTable[] = {nullptr,
                                                                                     nullptr};
[[gnu::section("KDSSYMBO"), gnu::used]] frame::FunctionEntry* const functionTable[] = {nullptr,
                                                                                       nullptr};

/// What lies strictly between a table's markers.
template <class Entry, std::size_t Size>
frame::Table<Entry> entries(Entry* const (&table)[Size])
{
    return frame::Table<Entry>(table).subspan(1, Size - 2);
}

} // namespace

KdRx::AppRetCode KdRxDbxApp::dispatch(std::uint32_t code, void* packet)
{
    using Operation = KdRx::AppRetCode (KdRxDbxApp::*)(void*);
    static constexpr Operation kByCode[] = {
        &KdRxDbxApp::onNullMessage, &KdRxDbxApp::onInitApp,       &KdRxDbxApp::onUnloadApp,
        &KdRxDbxApp::onLoadDrawing, &KdRxDbxApp::onUnloadDrawing, &KdRxDbxApp::onInvokeFunction,
        &KdRxDbxApp::onMessage6,    &KdRxDbxApp::onMessage7,      &KdRxDbxApp::onMessage8,
        &KdRxDbxApp::onMessage9,    &KdRxDbxApp::onMessage10,     &KdRxDbxApp::onMessage11,
        &KdRxDbxApp::onMessage12,   &KdRxDbxApp::onMessage13,     &KdRxDbxApp::onMessage14,
        &KdRxDbxApp::onMessage15};
    if (code >= std::size(kByCode))
        return KdRx::kRetOK;
    return (this->*kByCode[code])(packet);
}

KdRx::AppRetCode KdRxKrxApp::onInitApp(void* packet)
{
    constexpr const wchar_t* kLinker = L"DynamicLinker";
    resourceInstance_ = moduleResourceHandle();
    if (unloadable_) {
        if (auto* const linker = frame::findService<KdRxDynamicLinker>(kLinker))
            linker->unlockApplication(packet);
    }
    if (multiDocument_) {
        if (auto* const linker = frame::findService<KdRxDynamicLinker>(kLinker))
            linker->registerAppMDIAware(packet);
    }
    registerServerComponents();
    frame::registerClasses(entries(classTable));
    frame::addCommands(entries(commandTable), resourceInstance_);
    return KdRx::kRetOK;
}

KdRx::AppRetCode KdRxKrxApp::onUnloadApp(void*)
{
    frame::unregisterClasses(entries(classTable));
    frame::removeCommands(entries(commandTable));
    return KdRx::kRetOK;
}

KdRx::AppRetCode KdRxKrxApp::onLoadDrawing(void*)
{
    frame::defineFunctions(entries(functionTable), resourceInstance_);
    return KdRx::kRetOK;
}

KdRx::AppRetCode KdRxKrxApp::onUnloadDrawing(void*)
{
    frame::undefineFunctions(entries(functionTable), resourceInstance_);
    return KdRx::kRetOK;
}

KdRx::AppRetCode KdRxKrxApp::onInvokeFunction(void*)
{
    frame::invokeFunction(entries(functionTable));
    return KdRx::kRetOK;
}
