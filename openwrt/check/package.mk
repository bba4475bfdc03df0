PKG_BUILD_DIR ?= $(WORK)/build_dir/$(PKG_NAME)-$(PKG_VERSION)
PKG_INSTALL_DIR ?= $(PKG_BUILD_DIR)/ipkg-install

Download = $(eval $(Download/$(1)))

# make depends-PACKAGE and package-PACKAGE
define BuildPackage
$(eval $(Package/$(1)))
depends-$(1): ; @echo "$(DEPENDS)"
package-$(1): compile ; $$(call Package/$(1)/install,$(WORK)/packages/$(1))
all: package-$(1)
endef

.DEFAULT_GOAL := all
.PHONY: all compile

# Recipes are read when everything is defined.
.SECONDEXPANSION:
