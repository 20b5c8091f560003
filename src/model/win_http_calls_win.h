#pragma once

// The WinHTTP functions that the service client calls, as a table, so that a test can look at each call on
// its way and lead it to a server of its own. The program uses the table as it is made.

#include <windows.h>

#include <winhttp.h>

namespace varnelo {

struct WinHttpCalls {
    decltype(&WinHttpOpen) open = &WinHttpOpen;
    decltype(&WinHttpSetTimeouts) setTimeouts = &WinHttpSetTimeouts;
    decltype(&WinHttpConnect) connect = &WinHttpConnect;
    decltype(&WinHttpOpenRequest) openRequest = &WinHttpOpenRequest;
    decltype(&WinHttpSetOption) setOption = &WinHttpSetOption;
    decltype(&WinHttpAddRequestHeaders) addRequestHeaders = &WinHttpAddRequestHeaders;
    decltype(&WinHttpSendRequest) sendRequest = &WinHttpSendRequest;
    decltype(&WinHttpReceiveResponse) receiveResponse = &WinHttpReceiveResponse;
    decltype(&WinHttpQueryHeaders) queryHeaders = &WinHttpQueryHeaders;
    decltype(&WinHttpQueryDataAvailable) queryDataAvailable = &WinHttpQueryDataAvailable;
    decltype(&WinHttpReadData) readData = &WinHttpReadData;
    decltype(&WinHttpCloseHandle) closeHandle = &WinHttpCloseHandle;
};

}  // namespace varnelo
