#include "platform/application_base.h"

@implementation ApplicationBase
@end
