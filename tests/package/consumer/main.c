#include <VI_Interface.h>
#include <GRE_Interface.h>

int main(void) {
    static unsigned char frame[640 * 720];
    const char* gesture;
    VI_Init();
    VI_SetFrame(frame, 640, 720, 0);
    VI_ProcessFrame();
    return VI_GetGesture(&gesture, 0) != 0 || GRE_GetVersion()[0] == 0;
}
