#pragma once

#include "dispatch/dispatch.h"

@protocol OS_nw_path <NSObject>
@end
@protocol OS_nw_path_monitor <NSObject>
@end
typedef NSObject<OS_nw_path>* nw_path_t;
typedef NSObject<OS_nw_path_monitor>* nw_path_monitor_t;
typedef void (^nw_path_monitor_update_handler_t)(nw_path_t _Nonnull path);

typedef enum {
  nw_path_status_invalid = 0,
  nw_path_status_satisfied = 1,
  nw_path_status_unsatisfied = 2,
  nw_path_status_satisfiable = 3,
} nw_path_status_t;

EXTERN nw_path_monitor_t _Nonnull nw_path_monitor_create(void) __attribute__((ns_returns_retained)) SINCE(10.14);
EXTERN void nw_path_monitor_set_queue(nw_path_monitor_t _Nonnull monitor, dispatch_queue_t _Nonnull queue) SINCE(10.14);
EXTERN void nw_path_monitor_set_update_handler(nw_path_monitor_t _Nonnull monitor,
                                               nw_path_monitor_update_handler_t _Nonnull update_handler) SINCE(10.14);
EXTERN void nw_path_monitor_start(nw_path_monitor_t _Nonnull monitor) SINCE(10.14);
EXTERN void nw_path_monitor_cancel(nw_path_monitor_t _Nonnull monitor) SINCE(10.14);
EXTERN nw_path_status_t nw_path_get_status(nw_path_t _Nonnull path) SINCE(10.14);
