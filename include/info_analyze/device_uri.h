/** @file
 *  Device URIs of the printer daemon, driver families, and the folders, libraries and ports that
 *  follow from them. All functions are pure: they use only their
 *  arguments and constant tables.
 *
 *  A device URI is an endpoint prefix ("net:", "net6:", "mdns:", "usb://", "ncap_usb_cdc://" or
 *  "notuse:"), the printer's address, "/PDLType=" and a page-description-language key. The key and
 *  the installation folder each name a driver family.
 *
 *  A path of 2048 bytes or more is refused. A function that fails sets its output to NULL unless it
 *  says otherwise; for a NULL argument it leaves the output unchanged. */
#ifndef INFO_ANALYZE_DEVICE_URI_H_
#define INFO_ANALYZE_DEVICE_URI_H_

#include <stdint.h>

#include "info_analyze/export.h"

IA_BEGIN_DECLS

/** Recognises the endpoint prefix of a device URI.
 *  @param uri  device URI; NULL has none
 *  @return the constant prefix, such as "net:", never to be freed; NULL when there is none */
IA_EXPORT const char* zGetIOSignatureFromMqpdUri(const char* uri) IA_NOEXCEPT;

/** Copies the endpoint prefix of a device URI.
 *  @param uri     device URI
 *  @param family  receives a malloc'd copy of the prefix, such as "net:"
 *  @return 0, or -1 for a NULL argument, an unknown prefix or a failed allocation */
IA_EXPORT int32_t MqpdUriToEndpointFamily(const char* uri, char** family) IA_NOEXCEPT;

/** Copies the printer address of a device URI: the text between the prefix and "/PDLType=".
 *  @param uri      device URI
 *  @param address  receives a malloc'd copy; when the URI has no "/PDLType=" it receives all that
 *                  follows the prefix, which the caller must free even though the call fails
 *  @return 0, or -1 for a NULL argument, an unknown prefix, a missing "/PDLType=" or a failed
 *          allocation */
IA_EXPORT int32_t MqpdUriToPrinterAddress(const char* uri, char** address) IA_NOEXCEPT;

/** Derives the installation folder of a device URI's driver family.
 *  The key "nsu" names the folder that follows the first "nsu" anywhere in the URI, the key "drv"
 *  the folder that follows it in the key.
 *  @param uri     device URI
 *  @param folder  receives the malloc'd folder
 *  @return 0, or -1 for a NULL argument, a URI of no known family or a failed allocation */
IA_EXPORT int32_t MqpdUriToFullPathOfDriverFolder(const char* uri, char** folder) IA_NOEXCEPT;

/** Returns the installation folder of a driver family.
 *  @param family  number from 0
 *  @return borrowed path, such as "/usr/lib/Vorel/CUPS_SFP"; NULL when out of range */
IA_EXPORT const char* DriverFamily_GetFolderPath(int32_t family) IA_NOEXCEPT;

/** Derives the cache folder of a device URI's driver family, such as "/var/cache/Vorel/CUPSFAX".
 *  @param uri    device URI
 *  @param cache  receives the malloc'd folder
 *  @return 0, or -1 for a NULL argument, a family without cache folder or a failed allocation */
IA_EXPORT int32_t MqpdUriToFullPathOfDriverCache(const char* uri, char** cache) IA_NOEXCEPT;

/** Derives the cache folder of an installation folder's driver family.
 *  @param folder  installation folder
 *  @param cache   receives the malloc'd folder
 *  @return 0, or -1 for a NULL argument, an unknown folder or a failed allocation */
IA_EXPORT int32_t FolderPathToDriverCache(const char* folder, char** cache) IA_NOEXCEPT;

/** Derives the path of the library that talks to a device URI's endpoint.
 *  @param uri   device URI
 *  @param path  receives the malloc'd path, in "Bidi" of the installation folder
 *  @return 0, or -1 for a NULL argument, an unknown family, an endpoint without library or
 *          a failed allocation */
IA_EXPORT int32_t MqpdUriToFullPathOfIOLib(const char* uri, char** path) IA_NOEXCEPT;

/** Derives the path of the communication library: "<folder>/Bidi/libmqpd_util.so".
 *  @param folder  driver folder, used as it is
 *  @param path    receives the malloc'd path
 *  @return 0, or -1 for a NULL argument, a path of 2048 bytes or more, or a failed allocation */
IA_EXPORT int32_t FolderPathToFullPathOfMqpdUtil(const char* folder, char** path) IA_NOEXCEPT;

/** Looks up the TCP port of an installation folder's driver family.
 *  @param folder  installation folder
 *  @return port; 0 for NULL and for a folder of no family with a port */
IA_EXPORT int32_t FolderPathToPortNumber(const char* folder) IA_NOEXCEPT;

/** Looks up the TCP data port of an installation folder's driver family.
 *  @param folder  installation folder
 *  @return port; 0 for NULL and for a folder of no family with a port */
IA_EXPORT int32_t FolderPathToDataPortNumber(const char* folder) IA_NOEXCEPT;

/** Checks whether a device URI begins with "qvbm".
 *  @param uri  device URI
 *  @return 1 when it does, and for NULL; else 0 */
IA_EXPORT int32_t DeviceUriToCheckDuplex(const char* uri) IA_NOEXCEPT;

/** Names the folder under which drivers keep their caches: "/var/cache".
 *  @return malloc'd text that the caller releases with free(), or NULL when an allocation fails */
IA_EXPORT char* drivsrctools_PathUtil_NSCachesDirectory(void) IA_NOEXCEPT;

/** Names the folder for temporary files: "/var/cache/Vorel/CUPS_SFP/".
 *  @return malloc'd text that the caller releases with free(), or NULL when an allocation fails */
IA_EXPORT char* drivsrctools_PathUtil_NSTemporaryDirectory(void) IA_NOEXCEPT;

IA_END_DECLS

#endif /* INFO_ANALYZE_DEVICE_URI_H_ */
