// The functions of WinInet that the library calls.
#pragma once

#include <windows.h>

#include <wininet.h>

#include "../scriptdata/late_library.h"
#include "../scriptdata/unique.h"

namespace vh::late {

inline constinit late_library wininet(L"wininet.dll");
inline constinit late_function<decltype(InternetOpenW)> internet_open(wininet, "InternetOpenW");
inline constinit late_function<decltype(InternetCloseHandle)> internet_close_handle(wininet, "InternetCloseHandle");
inline constinit late_function<decltype(InternetSetStatusCallbackW)>
    internet_set_status_callback(wininet, "InternetSetStatusCallbackW");
inline constinit late_function<decltype(InternetQueryOptionW)> internet_query_option(wininet, "InternetQueryOptionW");
inline constinit late_function<decltype(InternetCrackUrlW)> internet_crack_url(wininet, "InternetCrackUrlW");
inline constinit late_function<decltype(InternetCanonicalizeUrlW)>
    internet_canonicalize_url(wininet, "InternetCanonicalizeUrlW");
inline constinit late_function<decltype(InternetGetConnectedState)>
    internet_get_connected_state(wininet, "InternetGetConnectedState");
inline constinit late_function<decltype(InternetAutodial)> internet_autodial(wininet, "InternetAutodial");
inline constinit late_function<decltype(InternetOpenUrlW)> internet_open_url(wininet, "InternetOpenUrlW");
inline constinit late_function<decltype(InternetConnectW)> internet_connect(wininet, "InternetConnectW");
inline constinit late_function<decltype(HttpOpenRequestW)> http_open_request(wininet, "HttpOpenRequestW");
inline constinit late_function<decltype(HttpSendRequestW)> http_send_request(wininet, "HttpSendRequestW");
inline constinit late_function<decltype(HttpQueryInfoW)> http_query_info(wininet, "HttpQueryInfoW");
inline constinit late_function<decltype(InternetReadFile)> internet_read_file(wininet, "InternetReadFile");
inline constinit late_function<decltype(InternetErrorDlg)> internet_error_dialog(wininet, "InternetErrorDlg");
inline constinit late_function<decltype(InternetGetLastResponseInfoW)>
    internet_get_last_response_info(wininet, "InternetGetLastResponseInfoW");

} // namespace vh::late

namespace vh {

struct inet_traits {
    using value_type = HINTERNET;
    static HINTERNET none() { return nullptr; }
    static void close(HINTERNET handle) { late::internet_close_handle(handle); }
};
using unique_inet = unique<inet_traits>;

} // namespace vh
