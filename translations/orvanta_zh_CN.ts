<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="zh_CN" sourcelanguage="C">
<context>
    <name>design</name>
    <message>
        <source>应用名称</source>
        <translation>应用名称</translation>
    </message>
    <message>
        <source>应用包名</source>
        <translation>应用包名</translation>
    </message>
    <message>
        <source>版本</source>
        <translation>版本</translation>
    </message>
    <message>
        <source>Build APK</source>
        <translation>APK 构建号</translation>
    </message>
    <message>
        <source>文件名</source>
        <translation>文件名</translation>
    </message>
    <message>
        <source>设备已经安装的版本</source>
        <translation>设备已经安装的版本</translation>
    </message>
    <message>
        <source>磁盘空间</source>
        <translation>磁盘空间</translation>
    </message>
    <message>
        <source>已使用</source>
        <translation>已使用</translation>
    </message>
    <message>
        <source>可用空间</source>
        <translation>可用空间</translation>
    </message>
    <message>
        <source>已用%</source>
        <translation>已用%</translation>
    </message>
    <message>
        <source>安装</source>
        <translation>安装</translation>
    </message>
    <message>
        <source>Install APK</source>
        <translation>安装 APK</translation>
    </message>
    <message>
        <source>授予权限</source>
        <translation>授予权限</translation>
    </message>
    <message>
        <source>授予列表中的所有权限</source>
        <translation>授予列表中的所有权限</translation>
    </message>
    <message>
        <source>权限</source>
        <translation>权限</translation>
    </message>
    <message>
        <source>在所选应用程序上显示权限</source>
        <translation>在所选应用程序上显示权限</translation>
    </message>
    <message>
        <source>卸载</source>
        <translation>卸载</translation>
    </message>
    <message>
        <source>卸载选定的应用程序</source>
        <translation>卸载选定的应用程序</translation>
    </message>
    <message>
        <source>卸载并保留数据</source>
        <translation>卸载并保留数据</translation>
    </message>
    <message>
        <source>卸载选定的应用程序并保留设备上的所有数据</source>
        <translation>卸载选定的应用程序并保留设备上的所有数据</translation>
    </message>
    <message>
        <source>Help</source>
        <translation>帮助</translation>
    </message>
    <message>
        <source>Try me</source>
        <translation>点我试试</translation>
    </message>
    <message>
        <source>退出关闭ADB</source>
        <translation>退出关闭ADB</translation>
    </message>
    <message>
        <source>在退出时关闭ADB服务（下次启动速度较慢，但不会锁定最后安装的目录）</source>
        <translation>在退出时关闭ADB服务（下次启动速度较慢，但不会锁定最后安装的目录）</translation>
    </message>
    <message>
        <source>已安装的游戏程序(备份/已用空间)</source>
        <translation>已安装的游戏程序(备份/已用空间)</translation>
    </message>
    <message>
        <source>Halden网</source>
        <translation>Halden网</translation>
    </message>
    <message>
        <source>功能命令合集</source>
        <translation>功能命令合集</translation>
    </message>
    <message>
        <source>ADB 命令行</source>
        <translation>ADB 命令行</translation>
    </message>
    <message>
        <source>打开Quest磁盘驱动器</source>
        <translation>打开Quest磁盘驱动器</translation>
    </message>
    <message>
        <source>Mount MTP-Device</source>
        <translation>挂载 MTP 设备</translation>
    </message>
    <message>
        <source>Run ADB Command on Device</source>
        <translation>在设备上运行 ADB 命令</translation>
    </message>
    <message>
        <source>未安装的应用</source>
        <translation>未安装的应用</translation>
    </message>
    <message>
        <source>卸载选定的游戏程序</source>
        <translation>卸载选定的游戏程序</translation>
    </message>
    <message>
        <source>撤消资源管理器菜单集成</source>
        <translation>撤消资源管理器菜单集成</translation>
    </message>
    <message>
        <source>Run</source>
        <translation>运行</translation>
    </message>
    <message>
        <source>要安装APK，请右键单击APK文件，然后选择Orvanta</source>
        <translation>要安装APK，请右键单击APK文件，然后选择Orvanta</translation>
    </message>
    <message>
        <source>未安装</source>
        <translation>未安装</translation>
    </message>
    <message>
        <source>Older</source>
        <translation>较旧</translation>
    </message>
    <message>
        <source>Newer</source>
        <translation>较新</translation>
    </message>
    <message>
        <source>Same</source>
        <translation>相同</translation>
    </message>
    <message>
        <source>%1 Buildnumber found</source>
        <translation>已找到构建号：%1</translation>
    </message>
    <message>
        <source>Command Error: </source>
        <translation>命令错误：</translation>
    </message>
    <message>
        <source>Command Line empty</source>
        <translation>命令行为空</translation>
    </message>
    <message>
        <source> File or command not found</source>
        <translation> 找不到文件或命令</translation>
    </message>
    <message>
        <source>CreatePipe failed. Error: </source>
        <translation>CreatePipe 失败。错误：</translation>
    </message>
    <message>
        <source>Found OBB Files: </source>
        <translation>找到 OBB 文件：</translation>
    </message>
    <message>
        <source>所有任务都完成了！</source>
        <translation>所有任务都完成了！</translation>
    </message>
    <message>
        <source>尝试连接设备以进行Orvanta，请稍候！</source>
        <translation>尝试连接设备以进行Orvanta，请稍候！</translation>
    </message>
    <message>
        <source>跳过所有obb文件</source>
        <translation>跳过所有obb文件</translation>
    </message>
    <message>
        <source>跳过的obb文件：</source>
        <translation>跳过的obb文件：</translation>
    </message>
    <message>
        <source>安装额外的 obb 文件：</source>
        <translation>安装额外的 obb 文件：</translation>
    </message>
    <message>
        <source>删除设备上存在的文件夹：</source>
        <translation>删除设备上存在的文件夹：</translation>
    </message>
    <message>
        <source>只能在以后重新安装APK有相同的签名时&#xd;
没有正确的签名，APK将无法在以后重新安装！！！&#xd;
&#xd;
你确定吗？</source>
        <translation>只能在以后重新安装APK有相同的签名时&#xd;
没有正确的签名，APK将无法在以后重新安装！！！&#xd;
&#xd;
你确定吗？</translation>
    </message>
    <message>
        <source>完毕！</source>
        <translation>完毕！</translation>
    </message>
    <message>
        <source>Package %1未安装</source>
        <translation>应用包 %1 未安装</translation>
    </message>
    <message>
        <source>Try connecting Device for APK-uninstall (%1)</source>
        <translation>正在连接设备以卸载 APK (%1)</translation>
    </message>
    <message>
        <source>Connection Error</source>
        <translation>连接错误</translation>
    </message>
    <message>
        <source>Found OBB Files (Click to Skip)</source>
        <translation>找到的 OBB 文件（点击跳过）</translation>
    </message>
    <message>
        <source>File name</source>
        <translation>文件名</translation>
    </message>
    <message>
        <source>将所选的OBB文件安装到设备</source>
        <translation>将所选的OBB文件安装到设备</translation>
    </message>
    <message>
        <source>在设备上安装选定的OBB文件</source>
        <translation>在设备上安装选定的OBB文件</translation>
    </message>
    <message>
        <source>点击跳过</source>
        <translation>点击跳过</translation>
    </message>
    <message>
        <source>Install</source>
        <translation>安装</translation>
    </message>
    <message>
        <source>Skip</source>
        <translation>跳过</translation>
    </message>
    <message>
        <source>不再显示</source>
        <translation>不再显示</translation>
    </message>
    <message>
        <source>OK</source>
        <translation>确定</translation>
    </message>
    <message>
        <source>Tip</source>
        <translation>提示</translation>
    </message>
    <message>
        <source>Orvanta自身已集成到“资源管理器”菜单中, 要安装APK，只需在APK上右键单击并选择Orvanta&#xd;
&#xd;
仅当您要使用其他功能（例如：ADB命令行，已安装的应用程序管理，将Quest挂载为驱动器或运行Quest ADB命令）时，才可以直接启动Orvanta</source>
        <translation>Orvanta自身已集成到“资源管理器”菜单中, 要安装APK，只需在APK上右键单击并选择Orvanta&#xd;
&#xd;
仅当您要使用其他功能（例如：ADB命令行，已安装的应用程序管理，将Quest挂载为驱动器或运行Quest ADB命令）时，才可以直接启动Orvanta</translation>
    </message>
    <message>
        <source>错误：也许没有管理员权限！</source>
        <translation>错误：也许没有管理员权限！</translation>
    </message>
    <message>
        <source>Orvanta将自身集成到资源管理器中， 通过右键单击APK文件，可以使用Orvanta来安装该文件。&#xd;&#xd;在确认资源管理器集成之前，请将Orvanta的目录复制到一个永久磁盘位置</source>
        <translation>Orvanta将自身集成到资源管理器中， 通过右键单击APK文件，可以使用Orvanta来安装该文件。&#xd;&#xd;在确认资源管理器集成之前，请将Orvanta的目录复制到一个永久磁盘位置</translation>
    </message>
    <message>
        <source>是否在鼠标右键菜单中集成Orvanta？</source>
        <translation>是否在鼠标右键菜单中集成Orvanta？</translation>
    </message>
    <message>
        <source>资源管理器集成</source>
        <translation>资源管理器集成</translation>
    </message>
    <message>
        <source>右键单击APK文件，然后选择“install”</source>
        <translation>右键单击APK文件，然后选择“install”</translation>
    </message>
    <message>
        <source>App Name</source>
        <translation>应用名称</translation>
    </message>
    <message>
        <source>Package Name</source>
        <translation>应用包名</translation>
    </message>
    <message>
        <source>Build</source>
        <translation>构建号</translation>
    </message>
    <message>
        <source>Used Space</source>
        <translation>占用空间</translation>
    </message>
    <message>
        <source>Used APK Space</source>
        <translation>APK 占用</translation>
    </message>
    <message>
        <source>Used OBB Space</source>
        <translation>OBB 占用</translation>
    </message>
    <message>
        <source>Used App Data</source>
        <translation>数据占用</translation>
    </message>
    <message>
        <source>&lt;- Click to sort</source>
        <translation>← 点击排序</translation>
    </message>
    <message>
        <source>Installed Apps</source>
        <translation>已安装的应用</translation>
    </message>
    <message>
        <source>Search</source>
        <translation>搜索</translation>
    </message>
    <message>
        <source>Copy</source>
        <translation>复制</translation>
    </message>
    <message>
        <source>Backup APK</source>
        <translation>备份 APK</translation>
    </message>
    <message>
        <source>Backup APK + OBB</source>
        <translation>备份 APK + OBB</translation>
    </message>
    <message>
        <source>卸载 APK</source>
        <translation>卸载 APK</translation>
    </message>
    <message>
        <source>Launch App</source>
        <translation>启动应用</translation>
    </message>
    <message>
        <source>Backup Non-Root App Data</source>
        <translation>备份应用数据（免 Root）</translation>
    </message>
    <message>
        <source>Restore Non-Root App Data</source>
        <translation>还原应用数据（免 Root）</translation>
    </message>
    <message>
        <source>Manage Permissions</source>
        <translation>管理权限</translation>
    </message>
    <message>
        <source>Processing Apps: 0 of %1</source>
        <translation>正在读取应用：0 / %1</translation>
    </message>
    <message>
        <source>%1 %2 of %3</source>
        <translation>%1 %2 / %3</translation>
    </message>
    <message>
        <source>Guardian</source>
        <translation>安全边界</translation>
    </message>
    <message>
        <source>Set Refresh Rate</source>
        <translation>设置刷新率</translation>
    </message>
    <message>
        <source>Full Rate Capture</source>
        <translation>全帧率录制</translation>
    </message>
    <message>
        <source>Video Capture Size</source>
        <translation>视频录制尺寸</translation>
    </message>
    <message>
        <source>Set Fixed Foveated Rendering level</source>
        <translation>设置固定注视点渲染级别</translation>
    </message>
    <message>
        <source>Texture Size</source>
        <translation>纹理尺寸</translation>
    </message>
    <message>
        <source>Reboot Quest</source>
        <translation>重启 Quest</translation>
    </message>
    <message>
        <source>On</source>
        <translation>开</translation>
    </message>
    <message>
        <source>Off</source>
        <translation>关</translation>
    </message>
    <message>
        <source>Start</source>
        <translation>开始</translation>
    </message>
    <message>
        <source>Permissions</source>
        <translation>权限</translation>
    </message>
    <message>
        <source>Permissions in Manifest</source>
        <translation>清单中的权限</translation>
    </message>
    <message>
        <source>Manage permissions</source>
        <translation>管理权限</translation>
    </message>
    <message>
        <source>Done</source>
        <translation>完成</translation>
    </message>
    <message>
        <source>Permission Granted</source>
        <translation>已授予权限</translation>
    </message>
    <message>
        <source>找不到应用数据</source>
        <translation>找不到应用数据</translation>
    </message>
    <message>
        <source>找不到应用程序数据！</source>
        <translation>找不到应用程序数据！</translation>
    </message>
    <message>
        <source>Error</source>
        <translation>错误</translation>
    </message>
    <message>
        <source>Info</source>
        <translation>信息</translation>
    </message>
    <message>
        <source>Select destination Folder</source>
        <translation>选择目标文件夹</translation>
    </message>
    <message>
        <source>选择包含备份数据的文件夹</source>
        <translation>选择包含备份数据的文件夹</translation>
    </message>
    <message>
        <source>没有找到备份！</source>
        <translation>没有找到备份！</translation>
    </message>
    <message>
        <source>备份还原</source>
        <translation>备份还原</translation>
    </message>
    <message>
        <source>APK already uninstalled</source>
        <translation>APK 已卸载</translation>
    </message>
    <message>
        <source>成功，APK已卸载</source>
        <translation>成功，APK已卸载</translation>
    </message>
    <message>
        <source>Save extracted APK as</source>
        <translation>将提取的 APK 另存为</translation>
    </message>
    <message>
        <source>请稍候，这可能需要一段时间...</source>
        <translation>请稍候，这可能需要一段时间...</translation>
    </message>
    <message>
        <source>Chill</source>
        <translation>请稍候</translation>
    </message>
</context>
</TS>
