#pragma once

#include "KZ_SharedPtr.h"
#include "KZ_ViInterface.h"

/// Holder of the one engine of the process. The engine is made at the first `get`, from whichever
/// thread, and lives until the process exits.
class ViInterfaceSingleton {
public:
    KZ::SharedPtr<KZ::ViInterface> viInterface;

    static ViInterfaceSingleton& get();

    KZ::ViInterface* operator->() const { return viInterface.get(); }

private:
    ViInterfaceSingleton();
};
