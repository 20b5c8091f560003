// Numbers of the resources in varnelo.exe, shared by the resource script and the code that loads them.
#pragma once

#define IDS_TITLE 101
#define IDS_WINDOW_CLASS 102

#define IDR_LANGUAGE_ENGLISH 102
#define IDR_LANGUAGE_GERMAN 103
#define IDR_LANGUAGE_JAPANESE 113

#define IDI_APPLICATION_ICON 104

#define IDR_SHADER_BLUR_PS 107
#define IDR_SHADER_ICON_PS 108
#define IDR_SHADER_ICON_VS 109
