#pragma once

// Display brightness requests of the video port.

#include <windows.h>
#include <winioctl.h>

#define IOCTL_VIDEO_QUERY_DISPLAY_BRIGHTNESS                                                       \
    CTL_CODE(FILE_DEVICE_VIDEO, 0x126, METHOD_BUFFERED, FILE_ANY_ACCESS)
#define IOCTL_VIDEO_SET_DISPLAY_BRIGHTNESS                                                         \
    CTL_CODE(FILE_DEVICE_VIDEO, 0x127, METHOD_BUFFERED, FILE_ANY_ACCESS)

static_assert(IOCTL_VIDEO_QUERY_DISPLAY_BRIGHTNESS == 0x230498, "brightness query code");
static_assert(IOCTL_VIDEO_SET_DISPLAY_BRIGHTNESS == 0x23049C, "brightness set code");

#define DISPLAYPOLICY_AC 0x00000001u
#define DISPLAYPOLICY_DC 0x00000002u
#define DISPLAYPOLICY_BOTH 0x00000003u

typedef struct _DISPLAY_BRIGHTNESS {
    UCHAR ucDisplayPolicy;
    UCHAR ucACBrightness;
    UCHAR ucDCBrightness;
} DISPLAY_BRIGHTNESS, *PDISPLAY_BRIGHTNESS;

static_assert(sizeof(DISPLAY_BRIGHTNESS) == 3, "DISPLAY_BRIGHTNESS is 3 bytes");
