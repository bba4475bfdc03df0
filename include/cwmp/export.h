/* Marks what the library exports; everything else stays hidden. */
#ifndef CWMP_EXPORT_H
#define CWMP_EXPORT_H

#define CWMP_EXPORT __attribute__((visibility("default")))

#endif
