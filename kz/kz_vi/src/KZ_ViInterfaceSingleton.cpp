#include "KZ_ViInterfaceSingleton.h"

ViInterfaceSingleton::ViInterfaceSingleton() : viInterface(getEngine()) {}

ViInterfaceSingleton& ViInterfaceSingleton::get() {
    static ViInterfaceSingleton singleton;
    return singleton;
}
