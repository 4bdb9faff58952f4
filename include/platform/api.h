/* What the headers of the platform's interface share. */
#ifndef PLATFORM_API_H
#define PLATFORM_API_H

/* no function of the interface lets an exception out */
#ifdef __cplusplus
#define PLATFORM_NOEXCEPT noexcept
#else
#define PLATFORM_NOEXCEPT
#endif

#endif
