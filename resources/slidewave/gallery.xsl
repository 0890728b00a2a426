<?xml version="1.0" encoding="UTF-8"?>
<xsl:stylesheet xmlns:xsl="http://www.w3.org/1999/XSL/Transform" version="1.0">
<xsl:output method="xml" indent="yes"/>
<xsl:template match='/'>
<xsl:for-each select="GALLERY/IMAGE">
<xsl:choose>
<xsl:when test="'$enablereflection$'='true'">
      <img src="reflect.php?img={FILENAME}" longdesc="{FILENAME}" alt="{TITLE}" />

</xsl:when>
<xsl:otherwise>
      <img src="{FILENAME}" longdesc="{FILENAME}" alt="{TITLE}" />

</xsl:otherwise>
</xsl:choose>
</xsl:for-each>
</xsl:template>
</xsl:stylesheet>

