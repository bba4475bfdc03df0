# What the recipe finds in an OpenWrt tree, as far as it uses it: here, to check the recipe without one.
INCLUDE_DIR := $(TOPDIR)
DL_DIR := $(WORK)/dl
STAGING_DIR := $(WORK)/staging
INSTALL_DIR := install -d -m 755
INSTALL_BIN := install -m 755
INSTALL_DATA := install -m 644
CP := cp -fpR
TAR := tar
