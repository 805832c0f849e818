/* The calls of libcups that the library and its tests make, for the 32-bit build alone, where
 * libcups cannot be counted on. A queue is a file "ppd/NAME.ppd" in CUPS_SERVERROOT, and its PPD is
 * returned as a link in TMPDIR, as libcups does for a server on the same host. Files are
 * plain ones, not compressed, and are not written through links. */
#define _FILE_OFFSET_BITS 64
#define _POSIX_C_SOURCE 200809L /* fdopen(), symlink() */
#include <cups/cups.h>
#include <cups/file.h>
#include <cups/ppd.h>
#include <errno.h>
#include <fcntl.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>
#include <unistd.h>

struct _cups_file_s {
  FILE* stream;
};

#pragma GCC diagnostic ignored "-Wdeprecated-declarations"

const char* cupsGetPPD(const char* queue) {
  static char link[1024];
  static int links = 0;
  const char* const root = getenv("CUPS_SERVERROOT");
  const char* const folder = getenv("TMPDIR");
  char ppd[1024];
  if (queue == NULL || root == NULL || folder == NULL) return NULL;
  snprintf(ppd, sizeof ppd, "%s/ppd/%s.ppd", root, queue);
  if (access(ppd, R_OK) != 0) return NULL;
  snprintf(link, sizeof link, "%s/%d.%d", folder, (int)getpid(), ++links);
  return symlink(ppd, link) == 0 ? link : NULL;
}

static cups_file_t* handle_of(FILE* stream) {
  cups_file_t* const file = stream != NULL ? malloc(sizeof *file) : NULL;
  if (file != NULL) file->stream = stream;
  if (file == NULL && stream != NULL) fclose(stream);
  return file;
}

cups_file_t* cupsFileOpenFd(int descriptor, const char* mode) {
  return handle_of(fdopen(descriptor, mode));
}

cups_file_t* cupsFileOpen(const char* path, const char* mode) {
  int flags = O_RDONLY;
  if (mode != NULL && strcmp(mode, "w") == 0) {
    flags = O_WRONLY | O_CREAT | O_TRUNC | O_NOFOLLOW;
  } else if (mode == NULL || strcmp(mode, "r") != 0) {
    errno = EINVAL;
    return NULL;
  }
  const int descriptor = open(path, flags, 0600);
  return descriptor >= 0 ? cupsFileOpenFd(descriptor, mode) : NULL;
}

/* A line ends at a line feed, a carriage return or both. */
char* cupsFileGets(cups_file_t* file, char* line, size_t size) {
  size_t length = 0;
  int byte = 0;
  while (length + 1 < size && (byte = getc(file->stream)) != EOF && byte != '\n' && byte != '\r') {
    line[length++] = (char)byte;
  }
  if (length == 0 && byte == EOF) return NULL;
  if (byte == '\r' && (byte = getc(file->stream)) != '\n') ungetc(byte, file->stream);
  line[length] = '\0';
  return line;
}

int cupsFilePuts(cups_file_t* file, const char* text) { return fputs(text, file->stream); }

int cupsFileClose(cups_file_t* file) {
  const int status = fclose(file->stream);
  free(file);
  return status;
}
