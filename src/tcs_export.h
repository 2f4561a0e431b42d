// The one export macro. Everything is built with hidden visibility; what a
// host may call or name carries TCS_EXPORT.
#ifndef TCS_EXPORT_H_
#define TCS_EXPORT_H_

#define TCS_EXPORT __attribute__((visibility("default")))

#endif  // TCS_EXPORT_H_
