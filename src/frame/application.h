#pragma once

#include "kd/rx.h"

#include <windows.h>

#include <cstdint>

/// Answers the host's messages: each operation takes the message's packet, passes it on unread and
/// returns the application return code. Here every operation does nothing.
///
/// The order of the operations is that of the message codes, the null message last but one.
class KdRxDbxApp {
public:
    virtual KdRx::AppRetCode onInitApp(void*) { return KdRx::kRetOK; }

    virtual KdRx::AppRetCode onUnloadApp(void*) { return KdRx::kRetOK; }

    virtual KdRx::AppRetCode onLoadDrawing(void*) { return KdRx::kRetOK; }

    virtual KdRx::AppRetCode onUnloadDrawing(void*) { return KdRx::kRetOK; }

    virtual KdRx::AppRetCode onInvokeFunction(void*) { return KdRx::kRetOK; }

    virtual KdRx::AppRetCode onMessage6(void*) { return KdRx::kRetOK; }

    virtual KdRx::AppRetCode onMessage7(void*) { return KdRx::kRetOK; }

    virtual KdRx::AppRetCode onMessage8(void*) { return KdRx::kRetOK; }

    virtual KdRx::AppRetCode onMessage9(void*) { return KdRx::kRetOK; }

    virtual KdRx::AppRetCode onMessage10(void*) { return KdRx::kRetOK; }

    virtual KdRx::AppRetCode onMessage11(void*) { return KdRx::kRetOK; }

    virtual KdRx::AppRetCode onMessage12(void*) { return KdRx::kRetOK; }

    virtual KdRx::AppRetCode onMessage13(void*) { return KdRx::kRetOK; }

    virtual KdRx::AppRetCode onMessage14(void*) { return KdRx::kRetOK; }

    virtual KdRx::AppRetCode onMessage15(void*) { return KdRx::kRetOK; }

    virtual KdRx::AppRetCode onNullMessage(void*) { return KdRx::kRetOK; }

    virtual void registerServerComponents() = 0;

    /// Hands a message to its operation. @return what that returns; success for an unknown code
    KdRx::AppRetCode dispatch(std::uint32_t code, void* packet);

protected:
    constexpr KdRxDbxApp() = default;
    ~KdRxDbxApp() = default;

    HINSTANCE resourceInstance_ = nullptr; ///< set at initialisation
    bool unloadable_ = true;
    bool multiDocument_ = true;
};

/// An extension module: declares itself to the dynamic linker and registers what its tables hold.
class KdRxKrxApp : public KdRxDbxApp {
public:
    KdRx::AppRetCode onInitApp(void* packet) override;
    KdRx::AppRetCode onUnloadApp(void* packet) override;
    KdRx::AppRetCode onLoadDrawing(void* packet) override;
    KdRx::AppRetCode onUnloadDrawing(void* packet) override;
    KdRx::AppRetCode onInvokeFunction(void* packet) override;

protected:
    constexpr KdRxKrxApp() = default;
    ~KdRxKrxApp() = default;
};

/// This library as the host sees it.
class COrvexbaseApp final : public KdRxKrxApp {
public:
    constexpr COrvexbaseApp() = default;

    KdRx::AppRetCode onInitApp(void* packet) override { return KdRxKrxApp::onInitApp(packet); }

    KdRx::AppRetCode onUnloadApp(void* packet) override { return KdRxKrxApp::onUnloadApp(packet); }

    void registerServerComponents() override {}
};
